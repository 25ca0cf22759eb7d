// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/localization/LocalizedText.hpp"

#include <concepts>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace quillane::core {

/// The input source that a chord has selected, by its name for users.
struct SelectedSource {
    std::string name;

    bool operator==(const SelectedSource&) const = default;
};

/// How a chord ended: a message for the user, and what the chord did. One without the latter is a failure.
struct ChordOutcome {
    using Effect = std::variant<std::monostate, WritingDirection, SelectedSource>;

    /// From a message, or from whatever becomes one.
    template <typename Message>

    requires(std::convertible_to<Message, LocalizedText> && !std::same_as<std::remove_cvref_t<Message>, ChordOutcome>)
        ChordOutcome(Message&& text, Effect done = {}) // NOLINT(google-explicit-constructor)
        : message(std::forward<Message>(text)), effect(std::move(done)) {}

    /// For those who only show the message.
    operator const LocalizedText&() const { return message; } // NOLINT(google-explicit-constructor)

    LocalizedText message;
    Effect effect;
};

} // namespace quillane::core

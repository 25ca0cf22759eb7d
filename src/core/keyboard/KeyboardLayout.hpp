// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <compare>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace quillane::core {

/// A key and the modifiers that choose among its characters.
struct KeyStroke {
    KeyCode keyCode = 0;
    bool shift = false;
    bool option = false;   ///< Option, or AltGr
    bool capsLock = false; ///< Caps Lock is on

    auto operator<=>(const KeyStroke&) const = default;
};

/// What the keys of an input source type.
struct KeyboardLayout {
    struct Output {
        std::u32string text; ///< never empty; of a dead key, its accent alone
        bool isDead = false; ///< waits for the next key, with which it may compose

        bool operator==(const Output&) const = default;
    };

    std::map<KeyStroke, Output> outputs; ///< strokes that are missing type nothing

    /// What a dead key and the key after it type together.
    std::map<std::pair<KeyStroke, KeyStroke>, std::u32string> compositions;

    /// Asks what each stroke types, and what each dead key composes with each stroke of the same Caps Lock; an empty
    /// text is nothing. The isolated form of lam and alef becomes the two letters, as in applications.
    [[nodiscard]] static KeyboardLayout
    read(const std::function<Output(const KeyStroke&)>& output,
         const std::function<std::u32string(const KeyStroke& dead, const KeyStroke& next)>& composition);

    bool operator==(const KeyboardLayout&) const = default;
};

inline constexpr KeyCode spaceKey = 49;

/// The keys that type text: those of ANSI, ISO and JIS keyboards without the keypad, Tab and Return, in ascending
/// order.
[[nodiscard]] std::span<const KeyCode> typingKeys();

} // namespace quillane::core

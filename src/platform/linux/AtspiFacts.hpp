// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/BusConnection.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

inline constexpr auto atspiRootPath = "/org/a11y/atspi/accessible/root";

/// Names one object in the accessibility trees: the bus name of its application (empty for this process) and its path
/// there.
struct AtspiObject {
    std::string bus;
    std::string path;

    bool operator==(const AtspiObject&) const = default;
};

/// What can be read of an object, each by one call to its application.
enum class AtspiFact : unsigned {
    role = 1 << 0,
    states = 1 << 1,
    interfaces = 1 << 2,
    name = 1 << 3,
    description = 1 << 4,
    identifier = 1 << 5,
    parent = 1 << 6,
    children = 1 << 7,
};

/// A set of facts.
using AtspiFactSet = unsigned;

[[nodiscard]] constexpr AtspiFactSet operator|(AtspiFact a, AtspiFact b) {
    return static_cast<unsigned>(a) | static_cast<unsigned>(b);
}

[[nodiscard]] constexpr AtspiFactSet operator|(AtspiFactSet a, AtspiFact b) {
    return a | static_cast<unsigned>(b);
}

/// Bits of an object's state set, by their numbers in the protocol (AtspiStateType).
enum class AtspiState : unsigned {
    active = 1,
    defunct = 6,
    editable = 7,
    enabled = 8,
    focusable = 11,
    focused = 12,
    multiLine = 17,
    sensitive = 24,
    showing = 25,
    readOnly = 43,
};

/// Interfaces of an object that matter here.
enum class AtspiInterface : unsigned { text = 1 << 0, editableText = 1 << 1 };

/// The facts of an object so far as they are known. What an application got wrong is absent.
struct AtspiFacts {
    AtspiFactSet asked = 0;
    AtspiFactSet answered = 0; ///< errors included
    AtspiFactSet refused = 0;  ///< answered by an error

    std::uint32_t role = 0;
    std::uint64_t states = 0;
    unsigned interfaces = 0;
    std::string name;
    std::string description;
    std::string identifier;
    std::optional<AtspiObject> parent;
    std::vector<AtspiObject> children;

    [[nodiscard]] bool isComplete() const { return answered == asked; }

    /// Nothing but errors: the object has gone, or its application.
    [[nodiscard]] bool isRefused() const { return refused == asked; }

    [[nodiscard]] bool is(AtspiState state) const { return (states >> static_cast<unsigned>(state) & 1) != 0; }

    [[nodiscard]] bool has(AtspiInterface interface) const {
        return (interfaces & static_cast<unsigned>(interface)) != 0;
    }
};

/// Asks for facts, all at once. The answers fill in the result as they arrive, also inside `BusConnection::wait`, so
/// long as somebody holds it; `onAnswer` is called after each and must do no more than take notes.
[[nodiscard]] std::shared_ptr<AtspiFacts> requestFacts(BusConnection& bus, const AtspiObject& object,
                                                       AtspiFactSet which, std::function<void()> onAnswer = {});

/// The object that a reference "(so)" names; none for the null reference and for what is no valid name.
[[nodiscard]] std::optional<AtspiObject> readReference(BusReader& reader);

} // namespace quillane

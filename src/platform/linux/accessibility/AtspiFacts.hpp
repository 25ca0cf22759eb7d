// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/dbus/BusConnection.hpp"

#include <array>
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

/// What can be read about an object, each through one call to its application.
enum class AtspiFact : unsigned {
    role = 1 << 0,
    states = 1 << 1,
    interfaces = 1 << 2,
    name = 1 << 3,
    description = 1 << 4,
    identifier = 1 << 5,
    parent = 1 << 6,
    children = 1 << 7,
    caret = 1 << 8,           ///< position of the text cursor
    selectionCount = 1 << 9,  ///< number of selected ranges
    selection = 1 << 10,      ///< the first of them
    address = 1 << 11,        ///< of the document that the object is
    actions = 0x3F << 12,     ///< the object's actions: a bit for each of the first
    characterCount = 1 << 19, ///< of its text
    extras = 1 << 18,         ///< attributes in the toolkit's own names: not read, but the question wakes Chromium
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
    expandable = 9,
    expanded = 10,
    focusable = 11,
    focused = 12,
    multiLine = 17,
    sensitive = 24,
    showing = 25,
    vertical = 29,
    hasPopup = 42,
    readOnly = 43,
};

/// Interfaces of an object that matter here.
enum class AtspiInterface : unsigned { text = 1 << 0, editableText = 1 << 1 };

/// The number of actions of an object that are read.
inline constexpr std::size_t atspiMaximumActions = 6;

/// The name of one action.
[[nodiscard]] constexpr AtspiFact atspiActionName(std::size_t index) {
    return static_cast<AtspiFact>(1U << (12U + index));
}

/// The known facts of an object. A wrong answer of an application is absent.
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
    std::int32_t caret = -1; ///< negative when it is nowhere
    std::int32_t characterCount = -1;
    std::int32_t selectionCount = 0;
    std::int32_t selectionStart = 0;
    std::int32_t selectionEnd = 0;
    std::array<std::string, atspiMaximumActions> actions; ///< their names, empty behind the last
    std::string address;

    [[nodiscard]] bool isComplete() const { return answered == asked; }

    /// Only errors: the object or its application has gone.
    [[nodiscard]] bool isRefused() const { return refused == asked; }

    /// Requested and answered with a value.
    [[nodiscard]] bool knows(AtspiFact fact) const { return (answered & ~refused & static_cast<unsigned>(fact)) != 0; }

    [[nodiscard]] bool is(AtspiState state) const { return (states >> static_cast<unsigned>(state) & 1) != 0; }

    [[nodiscard]] bool has(AtspiInterface interface) const {
        return (interfaces & static_cast<unsigned>(interface)) != 0;
    }
};

/// Requests facts, all at once. The answers fill in the result as they arrive, also inside `BusConnection::wait`, while
/// somebody holds it; `onAnswer` is called after each and must only record.
[[nodiscard]] std::shared_ptr<AtspiFacts> requestFacts(BusConnection& bus, const AtspiObject& object,
                                                       AtspiFactSet which, std::function<void()> onAnswer = {});

/// Reads an application's answer to the request for one fact.
void readAnswer(AtspiFact fact, DBusMessage& answer, AtspiFacts& facts);

/// The object that a reference "(so)" names; none for the null reference and for invalid names.
[[nodiscard]] std::optional<AtspiObject> readReference(BusReader& reader);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"
#include "platform/linux/accessibility/AtspiFacts.hpp"

#include <string_view>
#include <variant>

namespace quillane {

/// The value of an attribute, before its objects are turned into references.
using AtspiValue =
    std::variant<std::monostate, bool, std::int64_t, std::string, AtspiObject, std::vector<AtspiObject>, AXTextRange>;

/// How a macOS attribute is derived from facts.
struct AtspiAttribute {
    std::string_view name;
    AtspiFactSet needs;
    AtspiValue (*value)(const AtspiFacts& facts);
};

/// When an attribute can be set.
struct AtspiSettable {
    std::string_view name;
    AtspiFactSet needs;
    bool (*isSettable)(const AtspiFacts& facts);
};

/// The row for the attribute; nullptr when no element has it.
[[nodiscard]] const AtspiAttribute* findAttribute(std::string_view name);
[[nodiscard]] const AtspiSettable* findSettable(std::string_view name);

/// The facts that decide whether an element accepts typed text: role, subrole, enabled, settable.
inline constexpr AtspiFactSet editingFacts = AtspiFact::role | AtspiFact::states | AtspiFact::interfaces;

/// Whether the object is a menu, open or not.
[[nodiscard]] bool isMenu(const AtspiFacts& facts);

/// Whether the object is an item of a menu.
[[nodiscard]] bool isMenuItem(const AtspiFacts& facts);

/// Whether the object declares that it opens another one; not every item that does declares it.
[[nodiscard]] bool saysThatItOpens(const AtspiFacts& facts);

/// The object's action that corresponds to a macOS action; none when it does not have one.
[[nodiscard]] std::optional<std::size_t> atspiActionIndex(const AtspiFacts& facts, std::string_view name);

/// The macOS names of the object's actions.
[[nodiscard]] std::vector<std::string> actionNamesOf(const AtspiFacts& facts);

} // namespace quillane

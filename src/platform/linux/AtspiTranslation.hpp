// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AtspiFacts.hpp"

#include <string_view>
#include <variant>

namespace quillane {

/// A value of an attribute before its objects are made into references.
using AtspiValue = std::variant<std::monostate, bool, std::string, AtspiObject, std::vector<AtspiObject>>;

/// How an attribute of the macOS names is made from facts.
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

/// What decides whether an element takes typed text: role, subrole, enabled, settable.
inline constexpr AtspiFactSet editingFacts = AtspiFact::role | AtspiFact::states | AtspiFact::interfaces;

} // namespace quillane

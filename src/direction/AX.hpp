// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Helpers for reading other applications' accessibility trees. A value that cannot be read, or is of another type than
/// asked for, is absent. Nothing throws.
namespace quillane::AX {

[[nodiscard]] std::optional<AXElement> element(Accessibility& accessibility, const AXElement& from,
                                               std::string_view attribute);

[[nodiscard]] std::optional<std::string> string(Accessibility& accessibility, const AXElement& from,
                                                std::string_view attribute);

[[nodiscard]] std::optional<bool> flag(Accessibility& accessibility, const AXElement& from, std::string_view attribute);

/// The elements under the attribute; an empty list when there are none.
[[nodiscard]] std::vector<AXElement> children(Accessibility& accessibility, const AXElement& of,
                                              std::string_view attribute = "AXChildren");

/// Whether "AXValue" or, failing that, "AXSelectedText" is settable.
[[nodiscard]] bool isTextWritable(Accessibility& accessibility, const AXElement& element);

/// Breadth first from the root, the first element that the predicate accepts; it is given the element and its role.
/// Gives up after `limit` visited elements. Never looks inside text, tables, lists and web areas, nor inside the roles
/// in `skipping`.
[[nodiscard]] std::optional<AXElement>
find(Accessibility& accessibility, const AXElement& root, std::size_t limit, std::span<const std::string_view> skipping,
     const std::function<bool(const AXElement&, std::string_view role)>& predicate);

} // namespace quillane::AX

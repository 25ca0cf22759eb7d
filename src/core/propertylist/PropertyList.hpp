// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/propertylist/PropertyListValue.hpp"

#include <tl/expected.hpp>

#include <cstddef>
#include <span>
#include <vector>

namespace quillane::core {

enum class PropertyListError {
    malformed, ///< not a property list, or cut short
    tooDeep,   ///< nested deeper than 64 levels
    tooLarge,  ///< larger than the limit given, as it stands or unfolded, or of more than 100,000 values
};

/// Reads a binary or XML property list of at most `maximumBytes` (XML: 1 MiB at most). A binary one may refer to the
/// same value many times; unfolded, it must keep to the limit too, so a small file cannot fill the memory. Values
/// without a type here (UIDs, sets) are malformed; ill-formed text is read with U+FFFD in its place. Never throws and
/// never crashes on damaged input.
[[nodiscard]] tl::expected<PropertyListValue, PropertyListError> parsePropertyList(std::span<const std::byte> bytes,
                                                                                   std::size_t maximumBytes);

/// Writes Apple's binary format, "bplist00". Fails if the result could not be read back by `parsePropertyList` with the
/// same limit, never with `malformed`. Text that is not UTF-8 is written with U+FFFD in its place.
[[nodiscard]] tl::expected<std::vector<std::byte>, PropertyListError>
serializePropertyList(const PropertyListValue& value, std::size_t maximumBytes);

} // namespace quillane::core

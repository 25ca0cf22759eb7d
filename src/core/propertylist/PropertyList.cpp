// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyList.hpp"

#include "core/propertylist/PropertyListFormats.hpp"

#include <algorithm>
#include <string_view>

namespace quillane::core {

tl::expected<PropertyListValue, PropertyListError> parsePropertyList(std::span<const std::byte> bytes,
                                                                     std::size_t maximumBytes) {
    if (bytes.size() > std::min(maximumBytes, PropertyListBudget::largestFile)) {
        return tl::unexpected(PropertyListError::tooLarge);
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.starts_with("bplist00") ? parseBinaryPropertyList(bytes, maximumBytes) : parseXmlPropertyList(text);
}

} // namespace quillane::core

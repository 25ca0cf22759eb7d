// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/propertylist/PropertyList.hpp"

#include <cstddef>
#include <string_view>

namespace quillane::core {

/// Counts while a property list is read or written. Each function returns false past a limit.
class PropertyListBudget {
public:
    static constexpr std::size_t maximumDepth = 64;
    static constexpr std::size_t maximumValues = 100'000; ///< dictionary keys count as well

    static constexpr std::size_t largestFile = std::size_t{1} << 30; ///< whatever the caller's limit

    explicit PropertyListBudget(std::size_t maximumBytes) : bytes_(maximumBytes) {}

    [[nodiscard]] bool takeValue() { return values_++ < maximumValues; }

    [[nodiscard]] bool takeBytes(std::size_t count) {
        const bool enough = count <= bytes_;
        bytes_ -= enough ? count : 0;
        return enough;
    }

    [[nodiscard]] std::size_t values() const { return values_; }

private:
    std::size_t values_ = 0;
    std::size_t bytes_;
};

using PropertyListResult = tl::expected<PropertyListValue, PropertyListError>;

/// Reads Apple's binary format (CoreFoundation's CFBinaryPList.c describes it at its head).
[[nodiscard]] PropertyListResult parseBinaryPropertyList(std::span<const std::byte> bytes, std::size_t maximumBytes);

/// Reads the XML format (DTD "PropertyList-1.0").
[[nodiscard]] PropertyListResult parseXmlPropertyList(std::string_view document);

} // namespace quillane::core

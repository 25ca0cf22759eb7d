// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyListFormats.hpp"

#include <unicode/unistr.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace quillane::core {
namespace {

/// How many bytes a number needs: 1, 2, 4 or 8.
std::size_t byteWidth(std::uint64_t number) {
    const auto bits = static_cast<std::size_t>(std::bit_width(number | 1));
    return std::bit_ceil((bits + 7) / 8);
}

/// A marker with a size, and the object's entries in the table and in its container. More only in large lists.
constexpr std::size_t maximumBytesBesideContent = 32;

/// Writes one value, members first, so that the root is the last object.
class Writer {
public:
    explicit Writer(std::size_t maximumBytes) : budget_(maximumBytes), maximumBytes_(maximumBytes) {}

    tl::expected<std::vector<std::byte>, PropertyListError> write(const PropertyListValue& root) {
        if (const auto error = count(root, 1)) {
            return tl::unexpected(*error);
        }
        referenceSize_ = byteWidth(budget_.values());
        bytes_.reserve(contentBytes_ + budget_.values() * maximumBytesBesideContent);
        appendText("bplist00");
        const auto rootIndex = add(root);
        const auto tableStart = bytes_.size();
        const auto offsetSize = byteWidth(tableStart);
        for (const auto offset : offsets_) {
            append(offset, offsetSize);
        }
        bytes_.resize(bytes_.size() + 6); // unused
        append(offsetSize, 1);
        append(referenceSize_, 1);
        append(offsets_.size(), 8);
        append(rootIndex, 8);
        append(tableStart, 8);
        if (bytes_.size() > maximumBytes_) {
            return tl::unexpected(PropertyListError::tooLarge);
        }
        return std::move(bytes_);
    }

private:
    /// Counts the objects to write and refuses those past a limit, before memory is spent on them.
    std::optional<PropertyListError> count(const PropertyListValue& value, std::size_t depth) {
        if (depth > PropertyListBudget::maximumDepth) {
            return PropertyListError::tooDeep;
        }
        if (!budget_.takeValue()) {
            return PropertyListError::tooLarge;
        }
        if (const auto* text = value.as<std::string>()) {
            return take(text->size());
        }
        if (const auto* data = value.as<PropertyListValue::Data>()) {
            return take((*data)->size());
        }
        if (const auto* elements = value.as<PropertyListValue::Array>()) {
            for (const auto& element : *elements) {
                if (const auto error = count(element, depth + 1)) {
                    return error;
                }
            }
        } else if (const auto* entries = value.as<PropertyListValue::Dictionary>()) {
            for (const auto& [key, entry] : *entries) {
                if (depth == PropertyListBudget::maximumDepth) {
                    return PropertyListError::tooDeep;
                }
                if (!budget_.takeValue()) {
                    return PropertyListError::tooLarge;
                }
                if (const auto error = take(key.size())) {
                    return error;
                }
                if (const auto error = count(entry, depth + 1)) {
                    return error;
                }
            }
        }
        return std::nullopt;
    }

    std::optional<PropertyListError> take(std::size_t size) {
        contentBytes_ += size;
        return budget_.takeBytes(size) ? std::nullopt : std::optional(PropertyListError::tooLarge);
    }

    std::uint64_t add(const PropertyListValue& value) {
        return std::visit([this](const auto& exact) { return addObject(exact); }, value.storage());
    }

    /// Records that an object begins here, and returns its index.
    std::uint64_t begin() {
        offsets_.push_back(bytes_.size());
        return offsets_.size() - 1;
    }

    std::uint64_t addObject(bool value) {
        const auto index = begin();
        append(value ? 0x09 : 0x08, 1);
        return index;
    }

    std::uint64_t addObject(std::int64_t value) {
        const auto index = begin();
        const auto bits = static_cast<std::uint64_t>(value); // negative ones need all eight bytes
        const auto width = byteWidth(bits);
        append(0x10 | static_cast<unsigned>(std::countr_zero(width)), 1);
        append(bits, width);
        return index;
    }

    std::uint64_t addObject(double value) {
        const auto index = begin();
        append(0x23, 1);
        append(std::bit_cast<std::uint64_t>(value), 8);
        return index;
    }

    std::uint64_t addObject(PropertyListValue::Date value) {
        const auto index = begin();
        append(0x33, 1);
        append(std::bit_cast<std::uint64_t>(value.secondsSinceReferenceDate), 8);
        return index;
    }

    std::uint64_t addObject(const PropertyListValue::Data& value) {
        const auto index = begin();
        appendMarker(0x4, value->size());
        bytes_.insert(bytes_.end(), value->begin(), value->end());
        return index;
    }

    std::uint64_t addObject(const std::string& value) {
        const auto index = begin();
        if (std::ranges::all_of(value, [](char character) { return static_cast<unsigned char>(character) < 0x80; })) {
            appendMarker(0x5, value.size());
            appendText(value);
            return index;
        }
        const auto size = static_cast<int32_t>(value.size());
        const auto text = icu::UnicodeString::fromUTF8(icu::StringPiece(value.data(), size));
        appendMarker(0x6, static_cast<std::size_t>(text.length()));
        for (int32_t position = 0; position < text.length(); ++position) {
            append(text.charAt(position), 2);
        }
        return index;
    }

    std::uint64_t addObject(const PropertyListValue::Array& value) {
        std::vector<std::uint64_t> references;
        references.reserve(value.size());
        for (const auto& element : value) {
            references.push_back(add(element));
        }
        return addReferences(0xA, value.size(), references);
    }

    std::uint64_t addObject(const PropertyListValue::Dictionary& value) {
        std::vector<std::uint64_t> references;
        references.reserve(value.size() * 2);
        for (const auto& [key, entry] : value) {
            references.push_back(addObject(key));
        }
        for (const auto& [key, entry] : value) {
            references.push_back(add(entry));
        }
        return addReferences(0xD, value.size(), references);
    }

    std::uint64_t addReferences(unsigned kind, std::size_t size, const std::vector<std::uint64_t>& references) {
        const auto index = begin();
        appendMarker(kind, size);
        for (const auto reference : references) {
            append(reference, referenceSize_);
        }
        return index;
    }

    void appendMarker(unsigned kind, std::size_t size) {
        if (size < 0xF) {
            append(kind << 4 | size, 1);
            return;
        }
        append(kind << 4 | 0xF, 1);
        const auto width = byteWidth(size);
        append(0x10 | static_cast<unsigned>(std::countr_zero(width)), 1);
        append(size, width);
    }

    void append(std::uint64_t number, std::size_t width) {
        for (auto remaining = width; remaining > 0; --remaining) {
            bytes_.push_back(static_cast<std::byte>(number >> (remaining - 1) * 8 & 0xFF));
        }
    }

    void appendText(std::string_view text) {
        const auto content = std::as_bytes(std::span(text));
        bytes_.insert(bytes_.end(), content.begin(), content.end());
    }

    PropertyListBudget budget_;
    std::size_t maximumBytes_;
    std::size_t referenceSize_ = 1;
    std::size_t contentBytes_ = 0; ///< of texts and data
    std::vector<std::byte> bytes_;
    std::vector<std::uint64_t> offsets_;
};

} // namespace

tl::expected<std::vector<std::byte>, PropertyListError> serializePropertyList(const PropertyListValue& value,
                                                                              std::size_t maximumBytes) {
    return Writer(std::min(maximumBytes, PropertyListBudget::largestFile)).write(value);
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyListFormats.hpp"
#include "core/support/Characters.hpp"
#include "core/support/Utf8.hpp"

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace quillane::core {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

using Bytes = std::span<const std::byte>;

/// The unsigned big-endian number of at most eight bytes.
std::uint64_t number(Bytes bytes) {
    std::uint64_t value = 0;
    for (const auto byte : bytes) {
        value = value << 8 | std::to_integer<std::uint64_t>(byte);
    }
    return value;
}

std::string textOfUtf16(Bytes bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t unit = 0; unit < text.size(); ++unit) {
        text[unit] = static_cast<char16_t>(number(bytes.subspan(unit * 2, 2)));
    }
    return utf8OfUtf16(text);
}

/// Reads one file once. Stops at the first error.
class Reader {
public:
    Reader(Bytes bytes, std::size_t maximumBytes) : bytes_(bytes), budget_(maximumBytes) {}

    PropertyListResult read() {
        if (bytes_.size() < headerSize + trailerSize) {
            return tl::unexpected(PropertyListError::malformed);
        }
        const auto trailer = bytes_.last(trailerSize);
        offsetSize_ = std::to_integer<std::size_t>(trailer[6]);
        referenceSize_ = std::to_integer<std::size_t>(trailer[7]);
        objectCount_ = number(trailer.subspan(8, 8));
        const auto root = number(trailer.subspan(16, 8));
        const auto tableStart = number(trailer.subspan(24, 8));
        const auto tableEnd = bytes_.size() - trailerSize;
        const bool sizesFit = offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 && referenceSize_ <= 8;
        if (!sizesFit || tableStart < headerSize || tableStart > tableEnd ||
            objectCount_ > (tableEnd - tableStart) / offsetSize_) {
            return tl::unexpected(PropertyListError::malformed);
        }
        objects_ = bytes_.first(tableStart);
        table_ = bytes_.subspan(tableStart);
        auto value = object(root, 1);
        if (!value) {
            return tl::unexpected(error_);
        }
        return std::move(*value);
    }

private:
    std::nullopt_t fail(PropertyListError error) {
        error_ = error;
        return std::nullopt;
    }

    std::nullopt_t malformed() { return fail(PropertyListError::malformed); }

    std::optional<PropertyListValue> object(std::uint64_t index, std::size_t depth) {
        if (index >= objectCount_) {
            return malformed();
        }
        if (depth > PropertyListBudget::maximumDepth) { // a value that holds itself ends here as well
            return fail(PropertyListError::tooDeep);
        }
        if (!budget_.takeValue()) {
            return fail(PropertyListError::tooLarge);
        }
        const auto offset = number(table_.subspan(static_cast<std::size_t>(index) * offsetSize_, offsetSize_));
        if (offset < headerSize || offset >= objects_.size()) {
            return malformed();
        }
        const auto marker = std::to_integer<unsigned>(objects_[static_cast<std::size_t>(offset)]);
        auto rest = objects_.subspan(static_cast<std::size_t>(offset) + 1);
        const auto kind = marker >> 4;
        switch (kind) {
        case 0x0:
            return marker == 0x08 || marker == 0x09 ? std::optional<PropertyListValue>(marker == 0x09) : malformed();
        case 0x1:
            return integer(rest, marker & 0xF);
        case 0x2:
            return real(rest, marker & 0xF);
        case 0x3:
            return marker == 0x33 && rest.size() >= 8 ? std::optional<PropertyListValue>(PropertyListValue::Date{
                                                            std::bit_cast<double>(number(rest.first(8)))})
                                                      : malformed();
        default:
            break;
        }
        const auto count = takeCount(rest, marker & 0xF);
        if (!count) {
            return malformed();
        }
        switch (kind) {
        case 0x4:
            return data(rest, *count);
        case 0x5:
        case 0x6:
            return text(rest, *count, kind == 0x6);
        case 0xA:
            return array(rest, *count, depth);
        case 0xD:
            return dictionary(rest, *count, depth);
        default:
            return malformed();
        }
    }

    static std::optional<PropertyListValue> integer(Bytes rest, unsigned exponent) {
        if (exponent > 4 || rest.size() < std::size_t{1} << exponent) {
            return std::nullopt;
        }
        if (exponent < 4) { // only eight bytes hold a sign
            return static_cast<std::int64_t>(number(rest.first(std::size_t{1} << exponent)));
        }
        const auto high = number(rest.first(8));
        const auto low = number(rest.subspan(8, 8));
        constexpr auto signBit = std::uint64_t{1} << 63;
        if (high == 0) {
            return low < signBit ? PropertyListValue(static_cast<std::int64_t>(low))
                                 : PropertyListValue(static_cast<double>(low));
        }
        if (high == std::numeric_limits<std::uint64_t>::max() && low >= signBit) {
            return static_cast<std::int64_t>(low);
        }
        return std::nullopt;
    }

    static std::optional<PropertyListValue> real(Bytes rest, unsigned exponent) {
        if ((exponent != 2 && exponent != 3) || rest.size() < std::size_t{1} << exponent) {
            return std::nullopt;
        }
        if (exponent == 2) {
            return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(number(rest.first(4)))));
        }
        return std::bit_cast<double>(number(rest.first(8)));
    }

    /// The count in the marker or, when that is full, in the integer that follows.
    static std::optional<std::uint64_t> takeCount(Bytes& rest, unsigned inMarker) {
        if (inMarker != 0xF) {
            return inMarker;
        }
        if (rest.empty()) {
            return std::nullopt;
        }
        const auto marker = std::to_integer<unsigned>(rest.front());
        const auto size = std::size_t{1} << (marker & 0xF);
        if (marker >> 4 != 0x1 || size > 8 || rest.size() < 1 + size) {
            return std::nullopt;
        }
        const auto count = number(rest.subspan(1, size));
        rest = rest.subspan(1 + size);
        return count;
    }

    std::optional<PropertyListValue> data(Bytes rest, std::uint64_t count) {
        if (count > rest.size()) {
            return malformed();
        }
        if (!budget_.takeBytes(static_cast<std::size_t>(count))) {
            return fail(PropertyListError::tooLarge);
        }
        const auto content = rest.first(static_cast<std::size_t>(count));
        return PropertyListValue::Data({content.begin(), content.end()});
    }

    std::optional<PropertyListValue> text(Bytes rest, std::uint64_t count, bool utf16) {
        const std::size_t unit = utf16 ? 2 : 1;
        if (count > rest.size() / unit) {
            return malformed();
        }
        const auto content = rest.first(static_cast<std::size_t>(count) * unit);
        if (!budget_.takeBytes(content.size())) {
            return fail(PropertyListError::tooLarge);
        }
        if (utf16) {
            return textOfUtf16(content);
        }
        return validUtf8({reinterpret_cast<const char*>(content.data()), content.size()});
    }

    std::optional<PropertyListValue> array(Bytes rest, std::uint64_t count, std::size_t depth) {
        if (count > rest.size() / referenceSize_) {
            return malformed();
        }
        PropertyListValue::Array elements;
        for (std::size_t position = 0; position < count; ++position) {
            auto element = object(reference(rest, position), depth + 1);
            if (!element) {
                return std::nullopt;
            }
            elements.push_back(std::move(*element));
        }
        return elements;
    }

    std::optional<PropertyListValue> dictionary(Bytes rest, std::uint64_t count, std::size_t depth) {
        if (count > rest.size() / referenceSize_ / 2) {
            return malformed();
        }
        PropertyListValue::Dictionary entries;
        for (std::size_t position = 0; position < count; ++position) {
            const auto key = object(reference(rest, position), depth + 1);
            if (!key) {
                return std::nullopt;
            }
            const auto* name = key->as<std::string>();
            if (name == nullptr) {
                return malformed();
            }
            auto value = object(reference(rest, static_cast<std::size_t>(count) + position), depth + 1);
            if (!value) {
                return std::nullopt;
            }
            entries.insert_or_assign(*name, std::move(*value));
        }
        return entries;
    }

    [[nodiscard]] std::uint64_t reference(Bytes references, std::size_t position) const {
        return number(references.subspan(position * referenceSize_, referenceSize_));
    }

    Bytes bytes_;
    Bytes objects_; ///< from the start of the file, since offsets count from there
    Bytes table_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    PropertyListBudget budget_;
    PropertyListError error_ = PropertyListError::malformed;
};

} // namespace

PropertyListResult parseBinaryPropertyList(std::span<const std::byte> bytes, std::size_t maximumBytes) {
    return Reader(bytes, maximumBytes).read();
}

} // namespace quillane::core

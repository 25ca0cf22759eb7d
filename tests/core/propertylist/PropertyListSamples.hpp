// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/propertylist/PropertyListValue.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core::testing {

inline std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// A dictionary with every type of value, at the limits of each type.
inline PropertyListValue everyType() {
    using Limits = std::numeric_limits<std::int64_t>;
    return PropertyListValue::Dictionary{
        {"", "empty key"},
        {"array", PropertyListValue::Array{true, std::int64_t{1}, "a", PropertyListValue::Array{}}},
        {"data", bytesOf(std::string(300, 'x'))},
        {"date", PropertyListValue::Date{-0.25}},
        {"dictionary", PropertyListValue::Dictionary{{"a", PropertyListValue::Dictionary{}}}},
        {"empty data", PropertyListValue::Data{}},
        {"empty text", ""},
        {"false", false},
        {"integers", PropertyListValue::Array{Limits::min(), std::int64_t{-1}, std::int64_t{0}, std::int64_t{255},
                                              std::int64_t{256}, std::int64_t{65536}, std::int64_t{0xFFFFFFFF},
                                              std::int64_t{0x100000000}, Limits::max()}},
        {"real", 0.1},
        {"real that is whole", 2.0},
        {"text", "Hello"},
        {"true", true},
        {"עברית", "שלום \U0001F600 مرحبا"},
    };
}

/// A small binary property list assembled by hand. Objects are numbered in the order of adding.
class BinaryFile {
public:
    BinaryFile& object(std::string_view bytes) {
        offsets_.push_back(content_.size());
        content_ += bytes;
        return *this;
    }

    /// The file, with offsets and references of two bytes.
    [[nodiscard]] std::vector<std::byte> bytes(std::uint64_t root = 0) const {
        auto file = content_;
        for (const auto offset : offsets_) {
            file += number(offset, 2);
        }
        file += std::string(6, '\0') + "\x02\x02" + number(offsets_.size(), 8) + number(root, 8);
        file += number(content_.size(), 8);
        return bytesOf(file);
    }

    static std::string number(std::uint64_t value, unsigned width) {
        std::string text;
        for (auto shift = width * 8; shift > 0; shift -= 8) {
            text += static_cast<char>(value >> (shift - 8) & 0xFF);
        }
        return text;
    }

private:
    std::string content_ = "bplist00";
    std::vector<std::size_t> offsets_;
};

} // namespace quillane::core::testing

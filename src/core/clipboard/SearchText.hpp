// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core {

/// A query split into terms at white space, folded for comparison.
class SearchQuery {
public:
    explicit SearchQuery(std::string_view query);

    /// Without terms every text matches. A term that consists of ignored marks only does not count.
    [[nodiscard]] bool isEmpty() const { return terms_.empty(); }

    [[nodiscard]] const std::vector<std::u32string>& terms() const { return terms_; }

private:
    std::vector<std::u32string> terms_;
};

/// A text prepared for searching, folded as in Folding.hpp. Most texts use one alphabet beside ASCII, so a character
/// takes one byte here and a search reads as little memory as possible.
class SearchText {
public:
    explicit SearchText(std::string_view utf8);

    /// Whether every term is contained in the text.
    [[nodiscard]] bool matches(const SearchQuery& query) const;

    [[nodiscard]] std::size_t byteCount() const { return bytes_.size() + units_.size() * sizeof(char16_t); }

private:
    [[nodiscard]] bool contains(std::u32string_view term) const;

    char32_t block_ = 0;   ///< number of the block of 128 code points that bytes from 0x80 stand for; 0 for none
    std::string bytes_;    ///< one byte for each character; without a block, only a trace of each of the units
    std::u16string units_; ///< of a text in several scripts, or in one that is not an alphabet
};

/// Whether the needle, which is not empty, occurs in the text. Compares exactly, at the speed of memory.
[[nodiscard]] bool containsBytes(std::string_view text, std::string_view needle);

} // namespace quillane::core

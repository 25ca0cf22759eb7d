// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/SearchText.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillane::core {

/// A piece of a text, in bytes of its UTF-8.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0; ///< one past the last

    bool operator==(const TextRange&) const = default;
};

/// Where the terms of the query are in the original text, to be shown in bold: in order and without overlap. Marks on
/// the last letter of a match belong to it. Compares like `SearchText`.
[[nodiscard]] std::vector<TextRange> searchMatches(std::string_view utf8, const SearchQuery& query);

} // namespace quillane::core

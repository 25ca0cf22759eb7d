// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/SearchMatches.hpp"

#include "core/support/Folding.hpp"

#include <algorithm>
#include <cstdint>
#include <string>

#include <unicode/utf8.h>

namespace quillane::core {

namespace {

/// A text in the form that searching compares, and where each of its characters came from.
struct FoldedText {
    std::u32string characters;
    std::vector<std::size_t> begins; ///< of the code point in the original; one more, the end of the text

    explicit FoldedText(std::string_view utf8) {
        const auto* data = reinterpret_cast<const std::uint8_t*>(utf8.data());
        const auto size = static_cast<std::int64_t>(utf8.size());
        for (std::int64_t at = 0; at < size;) {
            const auto begin = static_cast<std::size_t>(at);
            U8_FWD_1(data, at, size);
            appendFolded(characters, utf8.substr(begin, static_cast<std::size_t>(at) - begin));
            begins.resize(characters.size(), begin);
        }
        begins.push_back(utf8.size());
    }

    /// The original of what begins at one character and ends before another.
    [[nodiscard]] TextRange original(std::size_t first, std::size_t next) const {
        while (next < characters.size() && begins[next] == begins[next - 1]) {
            ++next; // a letter that folds to several is one
        }
        return {begins[first], begins[next]};
    }
};

} // namespace

std::vector<TextRange> searchMatches(std::string_view utf8, const SearchQuery& query) {
    if (query.isEmpty()) {
        return {};
    }
    const FoldedText folded(utf8);
    std::vector<TextRange> found;
    for (const auto& term : query.terms()) {
        for (auto at = folded.characters.find(term); at != std::u32string::npos;
             at = folded.characters.find(term, at + term.size())) {
            found.push_back(folded.original(at, at + term.size()));
        }
    }
    std::ranges::sort(found, {}, &TextRange::begin);
    std::vector<TextRange> merged;
    for (const auto& range : found) {
        if (!merged.empty() && range.begin <= merged.back().end) {
            merged.back().end = std::max(merged.back().end, range.end);
        } else {
            merged.push_back(range);
        }
    }
    return merged;
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/SearchText.hpp"

#include "core/support/Folding.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace quillane::core {

namespace {

constexpr char32_t blockSize = 0x80;
/// Begins a code point that is neither plain ASCII nor of the block; five bytes below 0x20 follow.
constexpr char escape = 0x7f;

/// One byte for printable ASCII and for the block, an escape for all else. No encoded code point occurs inside another
/// one, so that comparing bytes compares texts.
void appendCompact(std::string& bytes, char32_t c, char32_t block) {
    if (c >= 0x20 && c < 0x7f) {
        bytes += static_cast<char>(c);
    } else if (c / blockSize == block) {
        bytes += static_cast<char>(c % blockSize | blockSize);
    } else {
        bytes += escape;
        for (int shift = 20; shift >= 0; shift -= 5) {
            bytes += static_cast<char>(c >> static_cast<unsigned>(shift) & 0x1fU);
        }
    }
}

void appendUtf8(std::string& bytes, char32_t c) {
    const auto put = [&](char32_t byte) { bytes += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xc0 | c >> 6U);
        put(0x80 | (c & 0x3fU));
    } else if (c < 0x10000) {
        put(0xe0 | c >> 12U);
        put(0x80 | (c >> 6U & 0x3fU));
        put(0x80 | (c & 0x3fU));
    } else {
        put(0xf0 | c >> 18U);
        put(0x80 | (c >> 12U & 0x3fU));
        put(0x80 | (c >> 6U & 0x3fU));
        put(0x80 | (c & 0x3fU));
    }
}

std::string encoded(std::u32string_view text, char32_t block) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const auto c : text) {
        block == 0 ? appendUtf8(bytes, c) : appendCompact(bytes, c, block);
    }
    return bytes;
}

/// The block that the text is written in beside ASCII, or 0 when it takes more than one. A majority is found in one
/// pass (Boyer and Moore, "MJRTY", 1981) and then counted.
char32_t alphabetBlock(std::u32string_view text) {
    char32_t block = 1; // of Latin-1, for a text of ASCII only
    std::size_t lead = 0;
    for (const auto c : text) {
        if (c >= blockSize) {
            if (lead == 0) {
                block = c / blockSize;
            }
            lead = c / blockSize == block ? lead + 1 : lead - 1;
        }
    }
    const auto others =
        std::ranges::count_if(text, [&](char32_t c) { return c / blockSize != block && (c < 0x20 || c >= 0x7f); });
    return static_cast<std::size_t>(others) * 16 <= text.size() ? block : 0;
}

/// Sixteen bytes at once, by the compiler's vector extension.
using Lanes = std::uint8_t __attribute__((vector_size(16)));

Lanes load(const char* from) {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

Lanes repeated(char byte) {
    Lanes lanes{};
    return lanes + static_cast<std::uint8_t>(byte);
}

bool isAnySet(Lanes lanes) {
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &lanes, sizeof lanes);
    return (halves[0] | halves[1]) != 0;
}

} // namespace

bool containsBytes(std::string_view text, std::string_view needle) {
    if (needle.size() > text.size()) {
        return false;
    }
    const auto first = repeated(needle.front());
    const auto last = repeated(needle.back());
    const std::size_t distance = needle.size() - 1;
    const std::size_t places = text.size() - distance;
    const auto candidates = [&](std::size_t at) {
        return static_cast<Lanes>(load(text.data() + at) == first) &
               static_cast<Lanes>(load(text.data() + at + distance) == last);
    };
    const auto occursIn = [&](std::size_t begin, std::size_t end) {
        const auto window = text.substr(begin, end - begin + distance);
        return window.find(needle) != std::string_view::npos;
    };
    constexpr std::size_t step = 4 * sizeof(Lanes);
    std::size_t at = 0;
    for (; at + step <= places; at += step) {
        const auto any = (candidates(at) | candidates(at + sizeof(Lanes))) |
                         (candidates(at + 2 * sizeof(Lanes)) | candidates(at + 3 * sizeof(Lanes)));
        if (isAnySet(any) && occursIn(at, at + step)) {
            return true;
        }
    }
    return at < places && occursIn(at, places);
}

SearchQuery::SearchQuery(std::string_view query) {
    const std::u32string text = folded(query);
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find(U' ', begin), text.size());
        if (end > begin) {
            terms_.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
}

SearchText::SearchText(std::string_view utf8) {
    const std::u32string text = folded(utf8);
    block_ = alphabetBlock(text);
    bytes_ = encoded(text, block_);
    bytes_.shrink_to_fit();
}

bool SearchText::matches(const SearchQuery& query) const {
    return std::ranges::all_of(
        query.terms(), [&](const std::u32string& term) { return containsBytes(bytes_, encoded(term, block_)); });
}

} // namespace quillane::core

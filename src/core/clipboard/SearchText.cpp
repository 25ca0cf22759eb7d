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
/// Starts a code point that is neither plain ASCII nor in the block; five bytes below 0x20 follow.
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

void appendUtf16(std::u16string& units, char32_t c) {
    if (c < 0x10000) {
        units += static_cast<char16_t>(c);
    } else {
        units += static_cast<char16_t>(0xd7c0U + (c >> 10U));
        units += static_cast<char16_t>(0xdc00U | (c & 0x3ffU));
    }
}

std::string compact(std::u32string_view text, char32_t block) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const auto c : text) {
        appendCompact(bytes, c, block);
    }
    return bytes;
}

std::u16string utf16(std::u32string_view text) {
    std::u16string units;
    units.reserve(text.size());
    for (const auto c : text) {
        appendUtf16(units, c);
    }
    return units;
}

/// The block that the text uses beside ASCII, or 0 when it uses more than one. A majority is found in one pass (Boyer
/// and Moore, "MJRTY", 1981) and then counted.
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

/// One byte for each unit; different units may have the same byte.
std::string traces(std::u16string_view units) {
    std::string bytes(units.size(), '\0');
    std::ranges::transform(units, bytes.begin(), [](char16_t unit) { return static_cast<char>(unit ^ unit >> 8U); });
    return bytes;
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

/// Looks for the first and the last byte of the needle at once. Where both match, `occursIn(begin, end)` decides
/// whether the needle begins at one of these positions.
template <typename OccursIn>
bool containsAt(std::string_view text, std::string_view needle, const OccursIn& occursIn) {
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

/// Whether the needle begins in the text at one of the positions in [begin, end).
template <typename View>
bool beginsBetween(View text, View needle, std::size_t begin, std::size_t end) {
    return text.substr(begin, end - begin + needle.size() - 1).find(needle) != View::npos;
}

} // namespace

bool containsBytes(std::string_view text, std::string_view needle) {
    return containsAt(text, needle,
                      [&](std::size_t begin, std::size_t end) { return beginsBetween(text, needle, begin, end); });
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
    if (block_ == 0) {
        units_ = utf16(text);
        units_.shrink_to_fit();
    }
    bytes_ = block_ == 0 ? traces(units_) : compact(text, block_);
    bytes_.shrink_to_fit();
}

bool SearchText::contains(std::u32string_view term) const {
    if (block_ != 0) {
        return containsBytes(bytes_, compact(term, block_));
    }
    const std::u16string needle = utf16(term);
    return containsAt(bytes_, traces(needle), [&](std::size_t begin, std::size_t end) {
        return beginsBetween(std::u16string_view(units_), std::u16string_view(needle), begin, end);
    });
}

bool SearchText::matches(const SearchQuery& query) const {
    return std::ranges::all_of(query.terms(), [&](const std::u32string& term) { return contains(term); });
}

} // namespace quillane::core

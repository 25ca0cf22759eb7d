// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Folding.hpp"

#include <array>
#include <cstdint>
#include <vector>

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace quillane::core {

namespace {

/// Canonical combining classes of marks that change the letter (Unicode Standard, section 4.3).
enum CombiningClass : std::uint8_t { notReordered = 0, nukta = 7, kanaVoicing = 8, virama = 9 };

bool isIgnored(UChar32 c) {
    if (u_hasBinaryProperty(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0) {
        return true;
    }
    switch (u_getCombiningClass(c)) {
    case notReordered:
    case nukta:
    case kanaVoicing:
    case virama:
        return false;
    default:
        return true;
    }
}

/// Folds one code point by ICU's tables, whatever it is.
void appendByTables(std::u32string& folded, UChar32 c) {
    if (u_isUWhiteSpace(c) != 0) {
        folded += U' ';
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    const auto* decomposer = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status)) {
        folded += static_cast<char32_t>(c);
        return;
    }
    // Case folding may compose, and decomposition may yield a cased letter.
    const icu::UnicodeString letters =
        decomposer->normalize(decomposer->normalize(icu::UnicodeString(c), status).foldCase(), status);
    for (std::int32_t i = 0; i < letters.length(); i = letters.moveIndex32(i, 1)) {
        if (const auto letter = letters.char32At(i); !isIgnored(letter)) {
            folded += static_cast<char32_t>(letter);
        }
    }
}

/// Latin, Greek, Cyrillic, Hebrew and Arabic: the letters of most texts, folded once.
class AlphabetTable {
public:
    static constexpr char32_t size = 0x800;

    AlphabetTable() {
        for (char32_t c = 0; c < size; ++c) {
            ends_[c] = 0;
            appendByTables(letters_, static_cast<UChar32>(c));
            ends_[c] = static_cast<std::uint16_t>(letters_.size());
        }
    }

    void append(std::u32string& folded, char32_t c) const {
        const std::size_t begin = c == 0 ? 0 : ends_[c - 1];
        const std::size_t end = ends_[c];
        if (end - begin == 1) {
            folded += letters_[begin];
        } else {
            folded.append(letters_, begin, end - begin);
        }
    }

private:
    std::array<std::uint16_t, size> ends_{};
    std::u32string letters_;
};

} // namespace

void appendFolded(std::u32string& folded, std::string_view utf8) {
    static const AlphabetTable alphabet;
    folded.reserve(folded.size() + utf8.size());
    const auto* data = reinterpret_cast<const std::uint8_t*>(utf8.data());
    const auto size = static_cast<std::int64_t>(utf8.size());
    for (std::int64_t at = 0; at < size;) {
        UChar32 c = 0;
        U8_NEXT_OR_FFFD(data, at, size, c);
        if (static_cast<char32_t>(c) < AlphabetTable::size) {
            alphabet.append(folded, static_cast<char32_t>(c));
        } else {
            appendByTables(folded, c);
        }
    }
}

std::u32string folded(std::string_view utf8) {
    std::u32string result;
    appendFolded(result, utf8);
    return result;
}

} // namespace quillane::core

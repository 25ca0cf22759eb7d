// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Utf8.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace quillane::core {

namespace {

// ICU's macros narrow integers on purpose.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

/// The first character and its length in bytes; a negative character when it is malformed. The text is not empty.
std::pair<UChar32, std::size_t> first(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t length = 0;
    UChar32 character = 0;
    U8_NEXT(bytes, length, text.size(), character);
    return {character, length};
}

#pragma GCC diagnostic pop

/// The number of ASCII bytes at the start, counted in whole words.
std::size_t asciiWords(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080'8080'8080'8080;
    std::size_t count = 0;
    for (std::uint64_t word = 0; count + sizeof word <= bytes.size(); count += sizeof word) {
        std::memcpy(&word, bytes.data() + count, sizeof word);
        if ((word & highBits) != 0) {
            break;
        }
    }
    return count;
}

} // namespace

bool isValidUtf8(std::string_view bytes) {
    bytes.remove_prefix(asciiWords(bytes));
    while (!bytes.empty()) {
        const auto [character, length] = first(bytes);
        if (character < 0) {
            return false;
        }
        bytes.remove_prefix(length);
        if (character < 0x80) {
            bytes.remove_prefix(asciiWords(bytes));
        }
    }
    return true;
}

std::string lowercased(std::string_view text) {
    const auto lower =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())))
            .toLower(icu::Locale::getRoot());
    return utf8OfUtf16({lower.getBuffer(), static_cast<std::size_t>(lower.length())});
}

std::string utf8OfUtf16(std::u16string_view text) {
    std::string result(text.size() * 3, '\0'); // the maximum for one unit
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(result.data(), static_cast<std::int32_t>(result.size()), &length, text.data(),
                       static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &status);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

} // namespace quillane::core

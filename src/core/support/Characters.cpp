// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Characters.hpp"

#include "core/support/Utf8.hpp"

#include <cstdint>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace quillane::core {

namespace {

/// Calls `visit(start, end, codePoint)` for each code point, with U+FFFD and `false` for ill-formed sequences; stops
/// when it returns false.
template <typename Visit>
void forEachCodePoint(std::string_view bytes, Visit visit) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto size = static_cast<std::int64_t>(bytes.size());
    for (std::int64_t at = 0; at < size;) {
        const auto start = at;
        UChar32 codePoint = 0;
        U8_NEXT(data, at, size, codePoint);
        if (!visit(static_cast<std::size_t>(start), static_cast<std::size_t>(at), codePoint >= 0)) {
            return;
        }
    }
}

} // namespace

std::string_view firstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count) {
        return text; // a character has at least one byte
    }
    UErrorCode status = U_ZERO_ERROR;
    UText opened = UTEXT_INITIALIZER;
    const std::unique_ptr<UText, decltype(&utext_close)> source(
        utext_openUTF8(&opened, text.data(), static_cast<std::int64_t>(text.size()), &status), &utext_close);
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) {
        // ICU's rules are part of its library, so this is memory running out: count code points instead.
        std::size_t cut = 0;
        forEachCodePoint(text, [&](std::size_t, std::size_t end, bool) { return (cut = end, --count > 0); });
        return text.substr(0, cut);
    }
    characters->setText(source.get(), status);
    std::int32_t end = characters->first();
    for (std::size_t i = 0; i < count && end != icu::BreakIterator::DONE; ++i) {
        end = characters->next();
    }
    return end == icu::BreakIterator::DONE ? text : text.substr(0, static_cast<std::size_t>(end));
}

std::string validUtf8(std::string bytes) {
    if (isValidUtf8(bytes)) {
        return bytes;
    }
    std::string valid;
    forEachCodePoint(bytes, [&](std::size_t start, std::size_t end, bool wellFormed) {
        valid += wellFormed ? bytes.substr(start, end - start) : "\xEF\xBF\xBD";
        return true;
    });
    return valid;
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Text.hpp"

#include "core/support/Characters.hpp"

#include <array>
#include <cstdint>
#include <cstdio>

#include <unicode/uniset.h>

namespace quillane::core {

namespace {

icu::UnicodeSet characters(const char* pattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeSet set(icu::UnicodeString(pattern), status);
    set.freeze();
    return set;
}

const icu::UnicodeSet& whiteSpace() {
    static const auto set = characters("[:White_Space:]");
    return set;
}

const icu::UnicodeSet& directionMarks() {
    static const auto set = characters("[:Bidi_Control:]");
    return set;
}

} // namespace

std::string_view trimmedOfWhiteSpace(std::string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    const auto start = whiteSpace().spanUTF8(text.data(), length, USET_SPAN_CONTAINED);
    text.remove_prefix(static_cast<std::size_t>(start));
    const auto end = whiteSpace().spanBackUTF8(text.data(), length - start, USET_SPAN_CONTAINED);
    return text.substr(0, static_cast<std::size_t>(end));
}

std::string withoutDirectionMarks(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto length = static_cast<std::int32_t>(text.size());
        const auto kept = directionMarks().spanUTF8(text.data(), length, USET_SPAN_NOT_CONTAINED);
        result += text.substr(0, static_cast<std::size_t>(kept));
        text.remove_prefix(static_cast<std::size_t>(kept));
        const auto marks =
            directionMarks().spanUTF8(text.data(), static_cast<std::int32_t>(text.size()), USET_SPAN_CONTAINED);
        text.remove_prefix(static_cast<std::size_t>(marks));
    }
    return result;
}

std::string withControlsEscaped(std::string_view text) {
    const auto valid = validUtf8(std::string(text));
    std::string result;
    for (std::size_t position = 0; position < valid.size(); ++position) {
        auto code = static_cast<unsigned char>(valid[position]);
        const bool mayBeC1 = code == 0xC2; // U+0080 to U+009F are C2 80 to C2 9F
        if (mayBeC1) {
            code = static_cast<unsigned char>(valid[position + 1]);
        }
        const bool isControl = mayBeC1 ? code < 0xA0 : (code < 0x20 && code != '\n' && code != '\t') || code == 0x7F;
        if (isControl) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
            result += escape.data();
            position += mayBeC1 ? 1 : 0;
        } else {
            result += valid[position];
        }
    }
    return result;
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Text.hpp"

#include <cstdint>

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

} // namespace quillane::core

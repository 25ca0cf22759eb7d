// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Text.hpp"

#include <cstdint>

#include <unicode/uniset.h>

namespace quillane::core {

namespace {

const icu::UnicodeSet& whiteSpace() {
    static const icu::UnicodeSet set = [] {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeSet property(icu::UnicodeString("[:White_Space:]"), status);
        property.freeze();
        return property;
    }();
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

} // namespace quillane::core

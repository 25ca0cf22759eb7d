// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/RTLInputLanguage.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include <unicode/locid.h>

namespace quillane::core::rtlInputLanguage {

namespace {

constexpr std::array<std::string_view, 5> rightToLeftScripts{"Arab", "Aran", "Hebr", "Thaa", "Syrc"};

} // namespace

bool isRightToLeft(std::span<const std::string> languages) {
    if (languages.empty() || languages.front().empty()) {
        return false;
    }
    auto tag = languages.front();
    std::ranges::replace(tag, '_', '-'); // a POSIX identifier
    UErrorCode status = U_ZERO_ERROR;
    auto locale = icu::Locale::forLanguageTag(tag, status);
    if (U_FAILURE(status) || *locale.getName() == '\0') {
        return false;
    }
    locale.addLikelySubtags(status);
    if (U_FAILURE(status)) {
        return false;
    }
    return std::ranges::find(rightToLeftScripts, std::string_view(locale.getScript())) != rightToLeftScripts.end() ||
           locale.isRightToLeft() != 0;
}

} // namespace quillane::core::rtlInputLanguage

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/localization/DateText.hpp"

#include "core/localization/FormattingLocale.hpp"

#include <memory>

#include <unicode/datefmt.h>
#include <unicode/unistr.h>

namespace quillane::core {

std::string dateText(Date date, AppLanguage language) {
    // The skeleton of the abbreviated date and the short time: the locale's medium date is all in numbers in Arabic.
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createInstanceForSkeleton("yMMMdjmm", formattingLocale(language), status));
    if (U_FAILURE(status) || !format) {
        return {};
    }
    icu::UnicodeString text;
    format->format((date.secondsSinceReferenceDate + referenceDateInUnixSeconds) * 1000, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

} // namespace quillane::core

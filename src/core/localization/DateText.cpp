// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/localization/DateText.hpp"

#include <memory>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace quillane::core {

std::string dateText(Date date, AppLanguage language) {
    const std::string id(languageID(language));
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, icu::Locale(id.c_str())));
    if (!format) {
        return {};
    }
    icu::UnicodeString text;
    format->format((date.secondsSinceReferenceDate + referenceDateInUnixSeconds) * 1000, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

} // namespace quillane::core

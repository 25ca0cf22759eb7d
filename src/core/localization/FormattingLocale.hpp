// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"

#include <string>

#include <unicode/locid.h>

namespace quillane::core {

/// The locale that formats dates and numbers for the language, with Western digits: beside Latin words, a line with two
/// kinds of digits is hard to read.
[[nodiscard]] inline icu::Locale formattingLocale(AppLanguage language) {
    return {(std::string(languageID(language)) + "@numbers=latn").c_str()};
}

} // namespace quillane::core

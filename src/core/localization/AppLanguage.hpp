// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillane::core {

/// A language of the interface, in the order of the language picker.
enum class AppLanguage { english, hebrew, arabic };

inline constexpr std::array allLanguages{AppLanguage::english, AppLanguage::hebrew, AppLanguage::arabic};

/// The BCP 47 code, which is also the identifier of the locale that formats dates and numbers.
[[nodiscard]] constexpr std::string_view languageID(AppLanguage language) {
    switch (language) {
    case AppLanguage::hebrew:
        return "he";
    case AppLanguage::arabic:
        return "ar";
    case AppLanguage::english:
        break;
    }
    return "en";
}

/// The language's own name.
[[nodiscard]] constexpr std::string_view nativeName(AppLanguage language) {
    switch (language) {
    case AppLanguage::hebrew:
        return "עברית";
    case AppLanguage::arabic:
        return "العربية";
    case AppLanguage::english:
        break;
    }
    return "English";
}

[[nodiscard]] constexpr bool isRTL(AppLanguage language) {
    return language != AppLanguage::english;
}

/// The language with exactly this identifier, or none.
[[nodiscard]] constexpr std::optional<AppLanguage> languageFromID(std::string_view id) {
    for (const auto language : allLanguages) {
        if (languageID(language) == id) {
            return language;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/Desktop.hpp"

#include <array>
#include <cctype>
#include <optional>
#include <span>
#include <string_view>

namespace quillane::fakes {

/// Words and signs that only a Mac has: its names, keys, places and programs, in three languages.
inline constexpr auto wordsOfMacOS = std::to_array<std::string_view>({"Mac",
                                                                      "macOS",
                                                                      "menu bar",
                                                                      "שורת התפריטים",
                                                                      "شريط القوائم",
                                                                      "⌘",
                                                                      "⌥",
                                                                      "⌃",
                                                                      "⇧",
                                                                      "Option",
                                                                      "Command",
                                                                      "Finder",
                                                                      "Maccy",
                                                                      "System Settings",
                                                                      "הגדרות המערכת",
                                                                      "إعدادات النظام",
                                                                      "keychain",
                                                                      "Keychain",
                                                                      "צרור המפתחות",
                                                                      "سلسلة المفاتيح",
                                                                      "Login Items",
                                                                      "login item",
                                                                      "פריט ההתחברות",
                                                                      "פריטי ההתחברות",
                                                                      "عنصر تسجيل الدخول",
                                                                      "عناصر تسجيل الدخول",
                                                                      "Screen Sharing",
                                                                      "שיתוף מסך",
                                                                      "مشاركة الشاشة",
                                                                      "TextEdit",
                                                                      "Safari",
                                                                      "Applications",
                                                                      "תיקיית היישומים",
                                                                      "مجلد التطبيقات"});

/// Those of Linux.
inline constexpr auto wordsOfLinux = std::to_array<std::string_view>({"Linux",          "X11",
                                                                      "Wayland",        "system tray",
                                                                      "מגש המערכת",     "علبة النظام",
                                                                      "Super",          "Alt",
                                                                      "Ctrl+",          "Shift+",
                                                                      "keyring",        "מחזיק המפתחות",
                                                                      "حلقة مفاتيح",    "package manager",
                                                                      "מנהל החבילות",   "مدير الحزم",
                                                                      "remote desktop", "מחשב מרוחק",
                                                                      "سطح مكتب بعيد",  "desktop settings",
                                                                      "שולחן העבודה",   "سطح المكتب"});

/// A word in the text that only another desktop has, or none. Latin words are matched as a whole.
[[nodiscard]] inline std::optional<std::string_view> wordOfAnotherDesktop(std::string_view text,
                                                                          core::Desktop shownOn) {
    const auto words = shownOn == core::Desktop::macOS ? std::span<const std::string_view>(wordsOfLinux)
                                                       : std::span<const std::string_view>(wordsOfMacOS);
    const auto isLetter = [&](std::size_t at) {
        return at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0;
    };
    for (const auto word : words) {
        for (auto at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
            const bool beginsInside = std::isalpha(static_cast<unsigned char>(word.front())) != 0 && isLetter(at - 1);
            const bool endsInside =
                std::isalpha(static_cast<unsigned char>(word.back())) != 0 && isLetter(at + word.size());
            if (!beginsInside && !endsInside) {
                return word;
            }
        }
    }
    return std::nullopt;
}

} // namespace quillane::fakes

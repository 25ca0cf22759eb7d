// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillane::core {

/// The applications in which direction commands work, in the order of the test-target picker.
enum class SupportedApplication { outlook, chrome, safari, textEdit, notes, mail, word };

struct SupportedApplicationTraits {
    SupportedApplication application{};
    std::string_view bundleID;
    std::string_view displayName;
    std::string_view
        directionMenuTitle; ///< of the submenu in the context menu; empty where buttons are pressed instead
};

inline constexpr std::array supportedApplications{
    SupportedApplicationTraits{SupportedApplication::outlook, "com.microsoft.Outlook", "Outlook", {}},
    SupportedApplicationTraits{SupportedApplication::chrome, "com.google.Chrome", "Chrome", "Writing Direction"},
    SupportedApplicationTraits{SupportedApplication::safari, "com.apple.Safari", "Safari", "Paragraph Direction"},
    SupportedApplicationTraits{SupportedApplication::textEdit, "com.apple.TextEdit", "TextEdit", "Writing Direction"},
    SupportedApplicationTraits{SupportedApplication::notes, "com.apple.Notes", "Notes", "Writing Direction"},
    SupportedApplicationTraits{SupportedApplication::mail, "com.apple.mail", "Mail", "Paragraph Direction"},
    SupportedApplicationTraits{SupportedApplication::word, "com.microsoft.Word", "Word", {}},
};

[[nodiscard]] constexpr const SupportedApplicationTraits& traits(SupportedApplication application) {
    return supportedApplications.at(static_cast<std::size_t>(application));
}

/// The application with exactly this bundle identifier (case counts), or none.
[[nodiscard]] constexpr std::optional<SupportedApplication> supportedApplication(std::string_view bundleID) {
    for (const auto& candidate : supportedApplications) {
        if (candidate.bundleID == bundleID) {
            return candidate.application;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core

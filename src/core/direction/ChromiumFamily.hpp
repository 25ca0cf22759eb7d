// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"

#include <chrono>
#include <string_view>

/// Browsers of the Chromium family build their accessibility tree when an assistive program reads "AXRole" of their
/// application (Chromium, chrome/browser/chrome_browser_application_mac.mm, -accessibilityRole), and may drop it again
/// when nobody has used it for a while. Until it is there, no element of theirs has the focus.
namespace quillane::core::chromiumFamily {

/// How long the main thread waits for a browser that is woken. One that takes longer has heard the call all the same.
inline constexpr std::chrono::milliseconds wakingTimeout{15};

/// How often a browser without a focused element is woken before the user is asked to place the cursor.
inline constexpr int maximumWakings = 3;

/// From waking a browser to looking for its focused element.
inline constexpr std::chrono::milliseconds wakingInterval{60};

/// Whether the application with exactly this bundle identifier is a known browser of the family.
[[nodiscard]] inline bool contains(std::string_view bundleID) {
    const auto* application = supportedApplication(bundleID);
    return application != nullptr && application->buildsTreeOnDemand;
}

/// Whether an application without a focused element is woken once more, after it has been woken `wakings` times.
[[nodiscard]] constexpr bool isWokenAgain(const SupportedApplication& application, int wakings) {
    return application.buildsTreeOnDemand && wakings < maximumWakings;
}

} // namespace quillane::core::chromiumFamily

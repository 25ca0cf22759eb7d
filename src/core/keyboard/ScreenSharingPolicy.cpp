// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ScreenSharingPolicy.hpp"

namespace quillane::core::screenSharingPolicy {

bool bypassKeyboardProcessing(std::optional<std::string_view> bundleID, bool enabled) {
    return enabled && bundleID == "com.apple.ScreenSharing";
}

} // namespace quillane::core::screenSharingPolicy

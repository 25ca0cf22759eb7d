// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ScreenSharingPolicy.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

using screenSharingPolicy::bypassKeyboardProcessing;

TEST(ScreenSharingPolicy, BypassesTheViewerWhileEnabled) {
    EXPECT_TRUE(bypassKeyboardProcessing("com.apple.ScreenSharing", true));
}

TEST(ScreenSharingPolicy, NeverBypassesWhileDisabled) {
    EXPECT_FALSE(bypassKeyboardProcessing("com.apple.ScreenSharing", false));
}

TEST(ScreenSharingPolicy, ComparesExactly) {
    EXPECT_FALSE(bypassKeyboardProcessing("com.apple.screensharing", true));
    EXPECT_FALSE(bypassKeyboardProcessing("com.apple.ScreenSharing.agent", true));
    EXPECT_FALSE(bypassKeyboardProcessing("", true));
    EXPECT_FALSE(bypassKeyboardProcessing(std::nullopt, true));
}

} // namespace
} // namespace quillane::core

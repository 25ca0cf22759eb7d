// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/direction/ChromiumFamily.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(ChromiumFamily, HasItsBrowsersByTheirExactIdentifiers) {
    for (const auto* browser : {"com.google.Chrome", "com.google.Chrome.canary", "org.chromium.Chromium",
                                "com.microsoft.edgemac", "com.brave.Browser", "company.thebrowser.Browser"}) {
        EXPECT_TRUE(chromiumFamily::contains(browser)) << browser;
    }
    for (const auto* other : {"com.apple.Safari", "org.mozilla.firefox", "com.google.chrome", "com.google.Chrome.app.x",
                              "com.google.Chrom", ""}) {
        EXPECT_FALSE(chromiumFamily::contains(other)) << other;
    }
}

TEST(ChromiumFamily, IsWokenThreeTimes) {
    const auto& chrome = *supportedApplication("com.google.Chrome");
    EXPECT_TRUE(chromiumFamily::isWokenAgain(chrome, 0));
    EXPECT_TRUE(chromiumFamily::isWokenAgain(chrome, 2));
    EXPECT_FALSE(chromiumFamily::isWokenAgain(chrome, 3));
    EXPECT_FALSE(chromiumFamily::isWokenAgain(*supportedApplication("com.apple.Safari"), 0));
}

} // namespace
} // namespace quillane::core

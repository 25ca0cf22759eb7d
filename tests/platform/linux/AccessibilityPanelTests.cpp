// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/AccessibilityPanel.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

TEST(AccessibilityPanel, IsTheOneOfTheDesktopThatRuns) {
    EXPECT_EQ(accessibilityPanel("GNOME"), (core::ProcessCommand{"gnome-control-center", {"universal-access"}}));
    EXPECT_EQ(accessibilityPanel("KDE")->executable, "systemsettings");
    EXPECT_EQ(accessibilityPanel("XFCE"), (core::ProcessCommand{"xfce4-accessibility-settings", {}}));
}

TEST(AccessibilityPanel, TheFirstDesktopThatIsKnownCounts) {
    EXPECT_EQ(accessibilityPanel("ubuntu:GNOME")->executable, "gnome-control-center");
    EXPECT_EQ(accessibilityPanel("pop:KDE:GNOME")->executable, "systemsettings");
}

TEST(AccessibilityPanel, OtherDesktopsHaveNone) {
    for (const auto* desktop : {"", ":", "::GNOM", "gnome", "Openbox"}) {
        EXPECT_EQ(accessibilityPanel(desktop), std::nullopt) << desktop;
    }
}

} // namespace
} // namespace quillane

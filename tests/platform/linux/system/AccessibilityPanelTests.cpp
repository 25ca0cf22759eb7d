// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/AccessibilityPanel.hpp"

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
        EXPECT_EQ(keyboardPanel(desktop), std::nullopt) << desktop;
    }
}

TEST(KeyboardPanel, IsTheOneOfTheDesktopThatRuns) {
    EXPECT_EQ(keyboardPanel("ubuntu:GNOME"), (core::ProcessCommand{"gnome-control-center", {"keyboard"}}));
    EXPECT_EQ(keyboardPanel("KDE"), (core::ProcessCommand{"systemsettings", {"kcm_keyboard"}}));
    EXPECT_EQ(keyboardPanel("XFCE"), (core::ProcessCommand{"xfce4-keyboard-settings", {}}));
}

TEST(Panel, IsInstalledWhenItsProgramIsFound) {
    EXPECT_TRUE(isInstalled(core::ProcessCommand{"sh", {}}));
    EXPECT_FALSE(isInstalled(core::ProcessCommand{"no-such-settings-program", {}}));
    EXPECT_FALSE(isInstalled(std::nullopt));
}

} // namespace
} // namespace quillane

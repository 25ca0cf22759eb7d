// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegateTest.hpp"
#include "core/localization/Texts.hpp"

namespace quillane {
namespace {

using core::AppLanguage;
using fakes::Modifier;

/// From keys to their effect on the desktop and on what the program shows.
using KeyboardFlowTest = AppDelegateTest;

TEST_F(KeyboardFlowTest, TheLanguageChordSwitchesAndReports) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    const auto writes = defaults.writes;
    releaseLanguageChord();
    EXPECT_EQ(defaults.writes, writes) << "the status line is only a note";
    EXPECT_EQ(desktop.inputSources.current(), fakes::hebrew());
    const auto expected = "Keyboard language: " + fakes::hebrew().localizedName;
    EXPECT_EQ(model->lastAction().rendered(AppLanguage::english), expected);
    EXPECT_EQ(defaults.string("LastStatus"), expected);
    EXPECT_TRUE(model->runtime().inputIsRTL);
    EXPECT_EQ(model->runtime().inputName, fakes::hebrew().localizedName);
}

TEST_F(KeyboardFlowTest, AChordHeldAcrossAnApplicationSwitchDoesNothing) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    desktop.press(Modifier::leftOption).press(Modifier::leftShift);
    desktop.withFrontApplication("com.apple.Notes");
    desktop.release(Modifier::leftShift).release(Modifier::leftOption).settle();
    EXPECT_EQ(desktop.inputSources.current(), fakes::english());
}

TEST_F(KeyboardFlowTest, TheLastSupportedApplicationIsRemembered) {
    desktop.withFrontApplication("com.apple.TextEdit");
    launch();
    EXPECT_EQ(model->testTargetID(), "com.apple.TextEdit");
    desktop.withFrontApplication("org.example.unsupported");
    EXPECT_EQ(model->testTargetID(), "com.apple.TextEdit");
    desktop.withFrontApplication("com.apple.Notes");
    EXPECT_EQ(model->testTargetID(), "com.apple.Notes");
}

TEST_F(KeyboardFlowTest, LinuxRemembersItsOwnTestTargets) {
    shownOn = core::Desktop::linuxDesktop;
    launch();
    desktop.withFrontApplication("org.libreoffice.script");
    EXPECT_EQ(model->testTargetID(), "org.libreoffice.script");
    desktop.withFrontApplication("com.apple.Notes");
    EXPECT_EQ(model->testTargetID(), "org.libreoffice.script") << "no application of this desktop";
}

TEST_F(KeyboardFlowTest, ATapThatTheSystemDisablesIsReported) {
    launch();
    desktop.tap.disable();
    desktop.settle();
    EXPECT_TRUE(desktop.tap.isEnabled());
    EXPECT_EQ(model->lastAction(), core::LocalizedText(core::texts::keyboardEngineRestarted));
}

TEST_F(KeyboardFlowTest, KeyboardActivityIsShown) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    EXPECT_FALSE(model->runtime().keyboardEventsObserved);
    EXPECT_TRUE(model->needsRelaunch());
    desktop.press(Modifier::leftShift).settle();
    EXPECT_TRUE(model->runtime().keyboardEventsObserved);
    EXPECT_FALSE(model->needsRelaunch());
}

} // namespace
} // namespace quillane

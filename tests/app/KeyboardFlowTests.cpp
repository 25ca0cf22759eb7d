// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegateTest.hpp"
#include "core/localization/Texts.hpp"
#include "support/KeyboardLayouts.hpp"

#include <QLabel>

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

/// The sign of the last chord, if it is shown.
QWidget* chordSign() {
    for (auto* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String("chordSign") && widget->isVisible()) {
            return widget;
        }
    }
    return nullptr;
}

/// An editor whose text was typed in English, with Hebrew beside it.
class WrongLayoutTest : public AppDelegateTest {
protected:
    WrongLayoutTest() {
        desktop.inputSources.setLayout(fakes::english().id, testing::englishLayout());
        desktop.inputSources.setLayout(fakes::hebrew().id, testing::hebrewLayout());
    }

    /// Types four letters into a new editor, and presses the chord.
    fakes::FakeElement& typeAndFix() {
        desktop.withFrontApplication("com.apple.TextEdit");
        const auto pid = desktop.frontPid();
        auto& field = desktop.accessibility.tree(pid).addTextField("AXTextArea").saying(U"akuo");
        desktop.accessibility.focus(pid, &field);
        desktop.type(0).type(40).type(32).type(31).settle();
        desktop.press(Modifier::leftOption).press(Modifier::rightShift).releaseAll().settle();
        return field;
    }
};

TEST_F(WrongLayoutTest, ChordFixesTheWordAndReportsTheSource) {
    launch();
    EXPECT_EQ(typeAndFix().text(), U"שלום");
    EXPECT_EQ(desktop.inputSources.current(), fakes::hebrew());
    EXPECT_EQ(model->lastAction().rendered(AppLanguage::english),
              "Keyboard language: " + fakes::hebrew().localizedName);
    EXPECT_NE(chordSign(), nullptr);
}

TEST_F(WrongLayoutTest, MonitorRunsForItAlone) {
    for (const auto* key : {"ShiftEnglishEnabled", "LanguageSwitchEnabled", "WritingDirectionEnabled"}) {
        defaults.setObject(key, false);
    }
    launch();
    EXPECT_TRUE(desktop.tap.isEnabled());
    EXPECT_EQ(statusRowTitle(), "Shortcuts are active");
    EXPECT_EQ(typeAndFix().text(), U"שלום");
    model->setFixesWrongLayout(false);
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(statusRowTitle(), "Shortcuts are off");
    EXPECT_EQ(defaults.boolean("FixWrongLayoutEnabled"), false);
}

TEST_F(WrongLayoutTest, ItsSwitchTurnsItOff) {
    defaults.setObject("FixWrongLayoutEnabled", false);
    launch();
    EXPECT_EQ(typeAndFix().text(), U"akuo");
    model->setFixesWrongLayout(true);
    EXPECT_EQ(typeAndFix().text(), U"שלום");
}

TEST_F(WrongLayoutTest, PauseTurnsItOff) {
    launch();
    click("Pause all");
    EXPECT_EQ(typeAndFix().text(), U"akuo");
}

TEST_F(KeyboardFlowTest, ASignNamesTheNewSourceAndGoesWithTheApplication) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    releaseLanguageChord();
    ASSERT_NE(chordSign(), nullptr);
    EXPECT_EQ(chordSign()->findChild<QLabel*>(QStringLiteral("text"))->text().toStdString(),
              fakes::hebrew().localizedName);
    desktop.withFrontApplication("com.apple.Notes");
    EXPECT_EQ(chordSign(), nullptr);
    releaseLanguageChord();
    ASSERT_NE(chordSign(), nullptr);
    desktop.queue.advance(std::chrono::seconds(2));
    EXPECT_EQ(chordSign(), nullptr);
}

TEST_F(KeyboardFlowTest, TheStatusRowOffersTheLastMessage) {
    launch();
    EXPECT_EQ(desktop.statusItem.rows()[1].toolTip, "");
    desktop.withFrontApplication("com.apple.TextEdit");
    releaseLanguageChord();
    EXPECT_EQ(desktop.statusItem.rows()[1].toolTip, "Keyboard language: " + fakes::hebrew().localizedName);
    EXPECT_EQ(desktop.statusItem.rows().size(), 20U);
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

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "settings/SettingsView.hpp"

#include <QComboBox>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

namespace quillane {
namespace {

using core::SettingsPage;

using PermissionAndTestingPagesTest = SettingsTest;

TEST_F(PermissionAndTestingPagesTest, PermissionsAreShownAndRequested) {
    desktop.withPermissions({});
    permissions.refresh();
    present(SettingsPage::permissions);
    EXPECT_TRUE(window().showsPermissions());
    EXPECT_TRUE(shows("Permissions approved: 0 of 2"));
    buttonNamed("Request permission").click();
    EXPECT_EQ(desktop.permissions.requests(), std::vector{core::MacPermission::inputMonitoring});
    EXPECT_TRUE(shows("Input Monitoring requested. Enable Quillane in the list, then return here."));
    desktop.permissions.grant(core::MacPermission::inputMonitoring);
    desktop.permissions.grant(core::MacPermission::accessibility);
    permissions.refresh();
    EXPECT_TRUE(shows("Permissions approved: 2 of 2"));
    EXPECT_THROW(static_cast<void>(buttonNamed("Request permission")), std::logic_error);
}

TEST_F(PermissionAndTestingPagesTest, TheRelaunchIsOfferedUntilTheMonitorHasHeardTheKeyboard) {
    desktop.withPermissions({core::MacPermission::accessibility});
    permissions.refresh();
    auto runtime = model.runtime();
    runtime.accessibilityGranted = true;
    model.setRuntime(runtime);
    present(SettingsPage::permissions);
    const auto& row = find<QWidget>("relaunch");
    EXPECT_TRUE(row.isVisible());
    runtime.monitorRunning = true;
    model.setRuntime(runtime);
    EXPECT_TRUE(row.isVisible()) << "it runs and has heard nothing";
    runtime.keyboardEventsObserved = true;
    model.setRuntime(runtime);
    EXPECT_FALSE(row.isVisible());
    runtime.monitorRunning = runtime.keyboardEventsObserved = runtime.keyboardAvailable = false;
    model.setRuntime(runtime);
    EXPECT_FALSE(row.isVisible()) << "no process can observe the keyboard here";
}

TEST_F(PermissionAndTestingPagesTest, TheKeyboardCheckIsOnBothPages) {
    for (const auto page : {SettingsPage::permissions, SettingsPage::testing}) {
        auto runtime = model.runtime();
        runtime.monitorRunning = runtime.keyboardEventsObserved = false;
        model.setRuntime(runtime);
        present(page);
        EXPECT_TRUE(shows("Waiting for a keyboard check"));
        runtime.monitorRunning = true;
        model.setRuntime(runtime);
        EXPECT_TRUE(shows("The engine is running. Press and release Shift to verify that keyboard input is being "
                          "received."));
        runtime.keyboardEventsObserved = true;
        model.setRuntime(runtime);
        EXPECT_TRUE(shows("Keyboard input is being received"));
    }
}

TEST_F(PermissionAndTestingPagesTest, SystemSettingsAreOfferedWhereTheyHaveThePage) {
    model.openInputMonitoring = nullptr;
    present(SettingsPage::permissions);
    buttonNamed("Open System Settings").click();
    EXPECT_EQ(desktop.permissions.opened(), std::vector{core::MacPermission::accessibility});
    model.openAccessibility = nullptr;
    window().view().refresh();
    EXPECT_THROW(static_cast<void>(buttonNamed("Open System Settings")), std::logic_error);
}

TEST_F(PermissionAndTestingPagesTest, TheInputSourceIsShownWithItsDirectionAndSwitched) {
    int switches = 0;
    model.switchLanguage = [&] { ++switches; };
    auto runtime = model.runtime();
    runtime.inputName = "Hebrew";
    runtime.inputIsRTL = true;
    model.setRuntime(runtime);
    present(SettingsPage::testing);
    EXPECT_TRUE(shows("Hebrew (right to left)"));
    runtime.inputName = "U.S.";
    runtime.inputIsRTL = false;
    model.setRuntime(runtime);
    EXPECT_TRUE(shows("U.S. (left to right)"));
    buttonNamed("Next input source").click();
    EXPECT_EQ(switches, 1);
    buttonNamed("Open keyboard settings").click();
    EXPECT_EQ(desktop.inputSources.openings, 1);
    model.openKeyboard = nullptr;
    window().view().refresh();
    EXPECT_THROW(static_cast<void>(buttonNamed("Open keyboard settings")), std::logic_error);
}

TEST_F(PermissionAndTestingPagesTest, ReadinessIsShownWithMissingPermissions) {
    permissions.refresh();
    auto runtime = model.runtime();
    runtime.accessibilityGranted = runtime.inputMonitoringGranted = true;
    runtime.runtimeStatus = core::texts::shortcutsActive;
    model.setRuntime(runtime);
    present(SettingsPage::testing);
    EXPECT_TRUE(shows("Ready to use"));
    EXPECT_TRUE(shows("Shortcuts are active"));
    desktop.permissions.revoke(core::MacPermission::inputMonitoring);
    permissions.refresh();
    runtime.inputMonitoringGranted = false;
    model.setRuntime(runtime);
    EXPECT_TRUE(shows("Not ready"));
    EXPECT_TRUE(shows("Permissions approved: 1 of 2"));
}

TEST_F(PermissionAndTestingPagesTest, TheTextOfTheTestingPageIsTheModels) {
    model.setTestText("one\nשתיים");
    present(SettingsPage::testing);
    auto& box = find<QTextEdit>("box");
    EXPECT_EQ(box.toPlainText(), "one\nשתיים");
    box.moveCursor(QTextCursor::End);
    QTest::keyClicks(&box, "!");
    EXPECT_EQ(model.testText(), "one\nשתיים!");
    EXPECT_EQ(box.textCursor().position(), 10) << "the cursor stays where it was typed at";
}

TEST_F(PermissionAndTestingPagesTest, ADirectionIsTestedInTheApplicationThatIsChosen) {
    auto runtime = model.runtime();
    runtime.monitorRunning = runtime.accessibilityGranted = true;
    model.setRuntime(runtime);
    auto options = model.options();
    options.writingDirection = true;
    model.setOptions(options);
    std::vector<core::WritingDirection> tested;
    model.testDirection = [&](core::WritingDirection direction) { tested.push_back(direction); };
    present(SettingsPage::testing);
    auto& rightToLeft = find<QPushButton>("testRightToLeft");
    EXPECT_FALSE(rightToLeft.isEnabled()); // nothing was in front yet
    model.setTestTargetID("com.apple.TextEdit");
    settle();
    EXPECT_EQ(find<QComboBox>("target").currentText(), "TextEdit");
    find<QComboBox>("target").activated(1);
    settle();
    EXPECT_EQ(model.testTargetID(), "com.google.Chrome");
    EXPECT_EQ(find<QComboBox>("target").currentText(), "Chrome");
    rightToLeft.click();
    find<QPushButton>("testLeftToRight").click();
    EXPECT_EQ(tested, (std::vector{core::WritingDirection::rightToLeft, core::WritingDirection::leftToRight}));
    options.paused = true;
    model.setOptions(options);
    window().view().refresh();
    EXPECT_FALSE(rightToLeft.isEnabled());
}

TEST_F(PermissionAndTestingPagesTest, TestTargetsAreThoseOfTheDesktop) {
    shownOn = core::Desktop::linuxDesktop;
    auto runtime = model.runtime();
    runtime.monitorRunning = runtime.accessibilityGranted = true;
    model.setRuntime(runtime);
    present(SettingsPage::testing);
    auto& target = find<QComboBox>("target");
    EXPECT_EQ(target.findText("Notes"), -1);
    EXPECT_EQ(target.itemText(1), "LibreOffice Writer");
    EXPECT_EQ(target.currentIndex(), -1);
    EXPECT_FALSE(find<QPushButton>("testRightToLeft").isEnabled());
    target.activated(1);
    EXPECT_EQ(model.testTargetID(), "org.libreoffice.script");
    EXPECT_EQ(target.currentText(), "LibreOffice Writer");
    EXPECT_TRUE(find<QPushButton>("testRightToLeft").isEnabled());
}

TEST_F(PermissionAndTestingPagesTest, ADirectionChordTurnsTheParagraphOfTheTextBox) {
    present(SettingsPage::testing);
    auto& box = find<QTextEdit>("box");
    EXPECT_FALSE(window().isTextBoxFocused());
    box.setPlainText("one\ntwo");
    box.setFocus();
    settle();
    EXPECT_TRUE(window().isTextBoxFocused());
    window().apply(core::WritingDirection::rightToLeft);
    EXPECT_EQ(box.document()->begin().blockFormat().layoutDirection(), Qt::RightToLeft);
    EXPECT_NE(box.document()->begin().next().blockFormat().layoutDirection(), Qt::RightToLeft);
    present(SettingsPage::general);
    EXPECT_FALSE(window().isTextBoxFocused());
}

TEST_F(PermissionAndTestingPagesTest, TheCaretOfTheEmptyTextBoxStandsWhereTheTextBegins) {
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        present(SettingsPage::testing);
        auto& box = find<QTextEdit>("box");
        const auto isAtRight = [&] { return box.cursorRect().center().x() > box.width() / 2; };
        box.clear();
        EXPECT_EQ(isAtRight(), core::isRTL(language));
        box.setPlainText("word"); // text goes by its own letters
        EXPECT_FALSE(isAtRight());
        box.setPlainText("מילה");
        EXPECT_TRUE(isAtRight());
        box.clear();
        EXPECT_EQ(isAtRight(), core::isRTL(language));
    }
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/AreaCaptureShortcut.hpp"
#include "core/localization/Texts.hpp"
#include "settings/SettingsWindow.hpp"

#include <QPushButton>

namespace quillane {
namespace {

using namespace std::chrono_literals;

constexpr const char* command = "Capture Area to Clipboard…";

/// Area capture in the running agent.
class AgentAreaCaptureTest : public AppDelegateTest {
protected:
    void start() {
        launch();
        preferences->choose(core::AppLanguage::english);
        desktop.settle();
    }

    [[nodiscard]] std::string lastAction() const { return model->lastAction().rendered(core::AppLanguage::english); }
};

TEST_F(AgentAreaCaptureTest, TheMenuStartsItAndTheStatusSaysHow) {
    start();
    EXPECT_EQ(desktop.statusItem.row(command).toolTip,
              "Select an area to capture and copy — like ⌃⇧⌘4. Esc to cancel.");
    click(command);
    EXPECT_EQ(desktop.areaCapture.starts(), 1);
    EXPECT_EQ(desktop.areaCapture.selecting(), core::AppLanguage::english);
    EXPECT_EQ(lastAction(), "Select an area to capture and copy. Esc to cancel. If selection does not start, check "
                            "that ⌃⇧⌘4 is enabled in Keyboard settings.");
    EXPECT_TRUE(desktop.statusItem.notices().empty());
}

TEST_F(AgentAreaCaptureTest, TheHintComesWithAButtonUntilTheNextOutcome) {
    start();
    click("Quick test");
    auto* button = settingsWindow()->findChild<QPushButton*>(QStringLiteral("offer"));
    ASSERT_NE(button, nullptr);
    EXPECT_FALSE(button->isVisible());
    click(command);
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), QStringLiteral("Open keyboard settings"));
    button->click();
    EXPECT_EQ(desktop.areaCapture.settingsShown(), 1);
    model->setLastAction(core::texts::keyboardEngineRestarted);
    EXPECT_FALSE(button->isVisible());
}

TEST_F(AgentAreaCaptureTest, WithoutAccessibilityTheMenuSaysSoAndNothingStarts) {
    desktop.withPermissions({core::MacPermission::inputMonitoring});
    start();
    EXPECT_EQ(desktop.statusItem.row(command).toolTip,
              "Accessibility permission is required to capture an area to the clipboard");
    click(command);
    EXPECT_EQ(desktop.areaCapture.starts(), 0);
    EXPECT_EQ(lastAction(), "Could not start area capture. Check Accessibility permission.");
    ASSERT_EQ(desktop.statusItem.notices().size(), 1U);
    EXPECT_EQ(desktop.statusItem.notices().front().text, lastAction());
    desktop.permissions.grant(core::MacPermission::accessibility);
    desktop.queue.advance(2s);
    EXPECT_NE(desktop.statusItem.row(command).toolTip,
              "Accessibility permission is required to capture an area to the clipboard");
}

TEST_F(AgentAreaCaptureTest, AKeyOfTheDesktopStartsItOnceItsModifiersAreUp) {
    start();
    desktop.press(fakes::Modifier::leftCommand);
    EXPECT_TRUE(delegate->handleControlRequest({"capture", {}}).ok);
    desktop.queue.advance(500ms);
    EXPECT_EQ(desktop.areaCapture.starts(), 0);
    desktop.release(fakes::Modifier::leftCommand);
    desktop.queue.advance(100ms);
    EXPECT_EQ(desktop.areaCapture.starts(), 1);
}

TEST_F(AgentAreaCaptureTest, HeldKeysAreReportedWhereTheUserSeesIt) {
    start();
    desktop.press(fakes::Modifier::leftShift);
    click(command);
    desktop.queue.advance(2s);
    ASSERT_EQ(desktop.statusItem.notices().size(), 1U);
    EXPECT_EQ(desktop.statusItem.notices().front().text, "Release the modifier keys and try capturing again");
    EXPECT_EQ(desktop.areaCapture.starts(), 0);
}

TEST_F(AgentAreaCaptureTest, WhereNobodyCanSelectTheRowIsDisabledAndTheCommandFails) {
    desktop.areaCapture.setMeans(AreaCapture::Means::none);
    start();
    EXPECT_FALSE(desktop.statusItem.row(command).enabled);
    EXPECT_EQ(desktop.statusItem.row(command).toolTip, "Area capture needs an X11 session");
    EXPECT_EQ(delegate->handleControlRequest({"capture", {}}),
              (ControlReply{false, "Area capture needs an X11 session"}));
}

TEST_F(AgentAreaCaptureTest, AnOwnSelectionIsNotComparedToAShortcut) {
    desktop.areaCapture.setMeans(AreaCapture::Means::ownSelection);
    start();
    EXPECT_EQ(desktop.statusItem.row(command).toolTip, "Select an area to capture and copy. Esc to cancel.");
}

TEST(AreaCaptureShortcut, IsControlShiftCommand4) {
    EXPECT_EQ(core::areaCaptureShortcut::keyCode, 21);
    EXPECT_EQ(core::areaCaptureShortcut::eventFlags, 0x160000U);
    EXPECT_EQ(core::areaCaptureShortcut::settingsAddress,
              "x-apple.systempreferences:com.apple.Keyboard-Settings.extension");
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"

#include <QLabel>

namespace quillane {
namespace {

using namespace std::chrono_literals;

/// What a start says where the desktop has no place for the status item.
using TrayTest = AppDelegateTest;

TEST_F(TrayTest, WithoutATrayAStartSaysThatTheProgramRuns) {
    desktop.statusItem.setVisible(false);
    launch();
    EXPECT_TRUE(desktop.statusItem.notices().empty()) << "the tray may take a moment";
    desktop.queue.advance(4s);
    ASSERT_EQ(desktop.statusItem.notices().size(), 1U);
    EXPECT_EQ(desktop.statusItem.notices().front(),
              (fakes::FakeStatusItem::Notice{"Quillane is running",
                                             "There is no system tray. Open Quillane again to see its settings."}));
    desktop.queue.advance(120s);
    EXPECT_EQ(desktop.statusItem.notices().size(), 1U);
}

TEST_F(TrayTest, WithNeitherTrayNorNoticesAStartShowsTheSettingsWhichSaySo) {
    desktop.statusItem.setVisible(false);
    desktop.statusItem.setRefusesNotices();
    launch();
    desktop.queue.advance(4s);
    EXPECT_EQ(settingsWindow(), nullptr) << "the notice may still be shown";
    testing::internal::CaptureStderr();
    desktop.statusItem.failNotices();
    EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with(
        "Quillane is running. There is no system tray. Open Quillane again to see its settings.\n"));
    ASSERT_NE(settingsWindow(), nullptr);
    const auto* line = settingsWindow()->findChild<QLabel*>(QStringLiteral("noStatusItem"));
    EXPECT_TRUE(line->isVisible());
    EXPECT_EQ(line->text(), "There is no system tray. Open Quillane again to see its settings.");
    desktop.statusItem.setVisible(true);
    desktop.queue.advance(2s);
    EXPECT_FALSE(line->isVisible());
}

TEST_F(TrayTest, WithNeitherTrayNorNoticesALaunchAtLoginShowsNoWindow) {
    desktop.workspace.setLaunchedAtLogin(true);
    desktop.statusItem.setVisible(false);
    desktop.statusItem.setRefusesNotices();
    launch();
    desktop.queue.advance(60s);
    testing::internal::CaptureStderr();
    desktop.statusItem.failNotices();
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(settingsWindow(), nullptr);
}

TEST_F(TrayTest, AnswerToANoticeThatOutlivesTheDelegateDoesNothing) {
    desktop.statusItem.setVisible(false);
    desktop.statusItem.setRefusesNotices();
    launch();
    desktop.queue.advance(4s);
    delegate.reset();
    desktop.statusItem.failNotices();
    EXPECT_EQ(settingsWindow(), nullptr);
}

TEST_F(TrayTest, TrayThatStartsLaterAtLoginIsWaitedFor) {
    desktop.workspace.setLaunchedAtLogin(true);
    desktop.statusItem.setVisible(false);
    launch();
    desktop.queue.advance(30s);
    desktop.statusItem.setVisible(true);
    desktop.queue.advance(60s);
    EXPECT_TRUE(desktop.statusItem.notices().empty());
}

TEST_F(TrayTest, WithATrayAStartSaysNothing) {
    launch();
    desktop.queue.advance(120s);
    EXPECT_TRUE(desktop.statusItem.notices().empty());
}

} // namespace
} // namespace quillane

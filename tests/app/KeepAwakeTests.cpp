// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegateTest.hpp"
#include "core/localization/Texts.hpp"

#include <nlohmann/json.hpp>

namespace quillane {
namespace {

using namespace std::chrono_literals;

/// Keep Awake from the menu to the desktop.
using KeepAwakeFlowTest = AppDelegateTest;

TEST_F(KeepAwakeFlowTest, TheMenuRowKeepsTheMacAwakeAndPausingLetsItSleep) {
    launch();
    EXPECT_FALSE(checked("Keep Mac Awake"));
    click("Keep Mac Awake");
    EXPECT_TRUE(checked("Keep Mac Awake"));
    EXPECT_EQ(desktop.sleepAssertions.held().size(), 2U);
    click("Pause all");
    EXPECT_FALSE(checked("Keep Mac Awake"));
    EXPECT_TRUE(desktop.sleepAssertions.held().empty());
    EXPECT_EQ(model->runtime().keepAwakeStatus, core::LocalizedText(core::texts::keepAwakePaused));
    click("Resume");
    EXPECT_TRUE(checked("Keep Mac Awake"));
    EXPECT_EQ(desktop.sleepAssertions.held().size(), 2U);
    click("Keep Mac Awake");
    EXPECT_TRUE(desktop.sleepAssertions.held().empty());
}

TEST_F(KeepAwakeFlowTest, KeepingAwakeIsRememberedAndEndsWithTheProgram) {
    defaults.setObject("KeepAwakeEnabled", true);
    launch();
    EXPECT_EQ(desktop.sleepAssertions.held().size(), 2U);
    delegate->applicationWillTerminate();
    EXPECT_TRUE(desktop.sleepAssertions.held().empty());
    EXPECT_TRUE(core::FeatureOptions::load(defaults).keepAwake);
}

TEST_F(KeepAwakeFlowTest, ARefusedAssertionIsReportedAndNotRetriedByTheTimer) {
    desktop.sleepAssertions.refuse(core::SleepAssertionKind::display, 7);
    launch();
    click("Keep Mac Awake");
    EXPECT_FALSE(checked("Keep Mac Awake"));
    EXPECT_TRUE(model->runtime().keepAwakeFailed);
    EXPECT_EQ(model->runtime().keepAwakeStatus, core::LocalizedText(core::texts::keepAwakeFailed));
    const std::string failed = "Could not prevent sleep. Turn off and on to retry.";
    EXPECT_EQ(desktop.statusItem.row("Keep Mac Awake").toolTip, failed);
    EXPECT_NE(delegate->handleControlRequest({"status", {}}).text.find(failed), std::string::npos);
    const auto json = nlohmann::json::parse(delegate->handleControlRequest({"status", {"--json"}}).text);
    EXPECT_EQ(json["keepAwake"]["status"], failed);
    const auto asked = desktop.sleepAssertions.asked().size();
    desktop.queue.advance(10s);
    EXPECT_EQ(desktop.sleepAssertions.asked().size(), asked);
}

TEST_F(KeepAwakeFlowTest, AnAssertionThatIsLostTwiceIsShownAsAFailureWithinTwoSeconds) {
    launch();
    click("Keep Mac Awake");
    desktop.sleepAssertions.lose(core::SleepAssertionKind::display, 7);
    desktop.queue.advance(2s);
    EXPECT_TRUE(checked("Keep Mac Awake"));
    EXPECT_EQ(desktop.sleepAssertions.held().size(), 2U);
    desktop.sleepAssertions.lose(core::SleepAssertionKind::display, 7);
    desktop.queue.advance(2s);
    EXPECT_FALSE(checked("Keep Mac Awake"));
    EXPECT_TRUE(desktop.sleepAssertions.held().empty());
    EXPECT_EQ(desktop.statusItem.row("Keep Mac Awake").toolTip, "Could not prevent sleep. Turn off and on to retry.");
    click("Keep Mac Awake"); // off
    click("Keep Mac Awake");
    EXPECT_TRUE(checked("Keep Mac Awake"));
}

} // namespace
} // namespace quillane

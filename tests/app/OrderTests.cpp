// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"

#include "core/clipboard/ClipboardOptions.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAreArray;

/// A base class, so that it outlives its writers.
struct WithJournal {
    fakes::Journal journal;
};

/// The order of the delegate's steps at start, refresh and end, read from the calls to the desktop.
class OrderTest : protected WithJournal, public AppDelegateTest {
protected:
    OrderTest() {
        core::ClipboardOptions clipboard;
        clipboard.enabled = true;
        defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(clipboard));
        defaults.setObject("KeepAwakeEnabled", true);
        defaults.setObject("FileShareServer", std::string("http://nas"));
        desktop.withFrontApplication("com.apple.TextEdit").keepJournal(journal);
    }

    ~OrderTest() override { delegate.reset(); } // its windows, before the application

    /// The calls with these names since the last time, each at its first place.
    [[nodiscard]] std::vector<std::string> firstOf(const std::vector<std::string>& names) {
        std::vector<std::string> found;
        for (const auto& call : journal.taken()) {
            if (std::ranges::count(names, call) > 0 && std::ranges::count(found, call) == 0) {
                found.push_back(call);
            }
        }
        return found;
    }

    void expectInOrder(const std::vector<std::string>& names) { EXPECT_THAT(firstOf(names), ElementsAreArray(names)); }

    void setPaused(bool paused) {
        auto options = model->options();
        options.paused = paused;
        model->setOptions(options);
    }
};

TEST_F(OrderTest, OfTheStart) {
    desktop.workspace.open(std::string(legacyBundleID));
    launch();
    expectInOrder({"terminate", "launchedAtLogin", "setActivationPolicy", "setMenu", "install", "start the updater",
                   "setInterest", "onChanged of input sources", "onDidActivateApplication", "onDidWake",
                   "start the tap", "2000 ms timer", "provideShare", "read QuillaneShowPermissionsAfterRestart"});
}

TEST_F(OrderTest, TheTargetIsRememberedBetweenTheTimerAndTheServices) {
    launch();
    const auto calls = journal.taken();
    const auto begin = std::ranges::find(calls, "2000 ms timer");
    const auto end = std::ranges::find(calls, "provideShare");
    ASSERT_LT(begin, end);
    EXPECT_EQ(std::count(begin, end, "frontmostApplication"), 2) << "the panel's target and the test target";
}

TEST_F(OrderTest, OfARefreshThatStarts) {
    defaults.setObject("AllFeaturesPaused", true);
    launch();
    static_cast<void>(journal.taken());
    setPaused(false);
    expectInOrder({"isGranted", "status of the login item", "runningApplications", "frontmostApplication",
                   "start the tap", "current input source", "500 ms timer", "hold awake", "setMenu"});
}

TEST_F(OrderTest, OfARefreshThatStops) {
    launch();
    static_cast<void>(journal.taken());
    setPaused(true);
    expectInOrder({"isGranted", "status of the login item", "runningApplications", "frontmostApplication",
                   "stop the tap", "current input source", "end of 500 ms timer", "let sleep", "setMenu"});
}

TEST_F(OrderTest, ATickRefreshesBeforeItAsksForAPermission) {
    desktop.withPermissions({});
    launch();
    click("Permissions");
    settleWindows();
    static_cast<void>(journal.taken());
    desktop.queue.advance(2s);
    const auto calls = journal.taken();
    EXPECT_EQ(std::ranges::count(calls, "request"), 1);
    EXPECT_LT(std::ranges::find(calls, "status of the login item"), std::ranges::find(calls, "request"));
}

TEST_F(OrderTest, ThePermissionsPageIsShownBeforeItsRequestIsMade) {
    desktop.withPermissions({});
    launch();
    static_cast<void>(journal.taken());
    desktop.queue.advance(500ms);
    settleWindows();
    ASSERT_NE(settingsWindow(), nullptr);
    desktop.queue.advance(2s);
    expectInOrder({"setActivationPolicy", "request"});
}

TEST_F(OrderTest, OfTheEnd) {
    launch();
    ASSERT_TRUE(delegate->handleControlRequest({"share", {files.url("a.txt").absoluteString()}}).ok);
    static_cast<void>(journal.taken());
    delegate->applicationWillTerminate();
    expectInOrder({"stop the tap", "setInterest to none", "end of an unfinished upload", "let sleep",
                   "end of 2000 ms timer", "end of onDidActivateApplication"});
}

} // namespace
} // namespace quillane

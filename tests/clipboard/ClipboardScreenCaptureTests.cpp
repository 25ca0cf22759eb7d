// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardScreenCapture.hpp"

#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::AppLanguage;
using fakes::Modifier;

constexpr const char* hint = "Select an area to capture and copy. Esc to cancel. If selection does not start, check "
                             "that ⌃⇧⌘4 is enabled in Keyboard settings.";
constexpr const char* releaseKeys = "Release the modifier keys and try capturing again";
constexpr const char* couldNotStart = "Could not start area capture. Check Accessibility permission.";

class ScreenCaptureTest : public testing::Test {
protected:
    ScreenCaptureTest() {
        capture_.emplace(desktop_.platform, [this] { return language_; });
        capture_->report = [this](const core::LocalizedText& text) {
            reports_.push_back(text.rendered(AppLanguage::english));
        };
        capture_->offer = [this](const core::LocalizedText& title, std::function<void()> action) {
            offers_.push_back(title.rendered(AppLanguage::english));
            action_ = std::move(action);
        };
    }

    fakes::FakeDesktop desktop_;
    std::optional<ClipboardScreenCapture> capture_;
    AppLanguage language_ = AppLanguage::hebrew;
    std::vector<std::string> reports_;
    std::vector<std::string> offers_;
    std::function<void()> action_;
};

TEST_F(ScreenCaptureTest, WithNoKeyHeldItStartsAtOnceAndSaysHow) {
    capture_->start();
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
    EXPECT_EQ(desktop_.areaCapture.selecting(), AppLanguage::hebrew);
    EXPECT_EQ(reports_, (std::vector<std::string>{hint}));
}

TEST_F(ScreenCaptureTest, TheHintOffersTheKeyboardSettings) {
    capture_->start();
    ASSERT_EQ(offers_, (std::vector<std::string>{"Open keyboard settings"}));
    EXPECT_EQ(desktop_.areaCapture.settingsShown(), 0);
    action_();
    EXPECT_EQ(desktop_.areaCapture.settingsShown(), 1);
}

TEST_F(ScreenCaptureTest, HeldKeysOfAChordAreWaitedFor) {
    desktop_.press(Modifier::leftControl).press(Modifier::leftShift);
    capture_->start();
    desktop_.queue.advance(200ms);
    desktop_.release(Modifier::leftShift);
    desktop_.queue.advance(200ms);
    EXPECT_EQ(desktop_.areaCapture.starts(), 0);
    desktop_.release(Modifier::leftControl);
    desktop_.queue.advance(49ms);
    EXPECT_EQ(desktop_.areaCapture.starts(), 0);
    desktop_.queue.advance(1ms);
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
    EXPECT_EQ(reports_, (std::vector<std::string>{hint}));
}

TEST_F(ScreenCaptureTest, KeysThatAreUpAtTheLastTryAreInTime) {
    desktop_.press(Modifier::leftOption);
    capture_->start();
    desktop_.queue.advance(999ms);
    desktop_.release(Modifier::leftOption);
    desktop_.queue.advance(1ms);
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
}

TEST_F(ScreenCaptureTest, ShiftHeldForTwoSecondsIsReportedAndNothingStarts) {
    desktop_.press(Modifier::leftShift);
    capture_->start();
    desktop_.queue.advance(999ms);
    EXPECT_TRUE(reports_.empty());
    desktop_.queue.advance(1ms);
    EXPECT_EQ(reports_, (std::vector<std::string>{releaseKeys}));
    desktop_.queue.advance(1s);
    desktop_.release(Modifier::leftShift);
    desktop_.queue.advance(5s);
    EXPECT_EQ(reports_.size(), 1U);
    EXPECT_EQ(desktop_.areaCapture.starts(), 0);
}

TEST_F(ScreenCaptureTest, CapsLockIsNoReasonToWait) {
    desktop_.keyEvents.setCurrentFlags(core::flags::capsLock | core::flags::secondaryFn);
    capture_->start();
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
}

TEST_F(ScreenCaptureTest, EachOfTheFourModifiersIsWaitedFor) {
    for (const auto flag : {core::flags::shift, core::flags::control, core::flags::option, core::flags::command}) {
        desktop_.keyEvents.setCurrentFlags(flag);
        capture_->start();
        EXPECT_EQ(desktop_.areaCapture.starts(), 0) << flag;
    }
}

TEST_F(ScreenCaptureTest, WithoutAccessibilityNothingStarts) {
    desktop_.withPermissions({core::MacPermission::inputMonitoring});
    capture_->start();
    EXPECT_EQ(reports_, (std::vector<std::string>{couldNotStart}));
    EXPECT_TRUE(offers_.empty());
    EXPECT_EQ(desktop_.areaCapture.starts(), 0);
}

TEST_F(ScreenCaptureTest, ARefusalOfTheSystemIsReported) {
    desktop_.areaCapture.refuse();
    capture_->start();
    EXPECT_EQ(reports_, (std::vector<std::string>{couldNotStart}));
    EXPECT_TRUE(offers_.empty());
}

TEST_F(ScreenCaptureTest, ASecondStartWhileTheFirstWaitsIsOneCapture) {
    desktop_.press(Modifier::leftCommand);
    capture_->start();
    desktop_.queue.advance(500ms);
    capture_->start();
    desktop_.queue.advance(600ms);
    EXPECT_TRUE(reports_.empty());
    desktop_.release(Modifier::leftCommand);
    desktop_.queue.advance(1s);
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
    EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(ScreenCaptureTest, AStepThatComesAfterItHasGoneDoesNothing) {
    desktop_.press(Modifier::leftShift);
    capture_->start();
    capture_.reset();
    desktop_.release(Modifier::leftShift).queue.advance(2s);
    EXPECT_EQ(desktop_.areaCapture.starts(), 0);
}

TEST_F(ScreenCaptureTest, WhereTheProgramSelectsItselfNoShortcutIsSpokenOf) {
    desktop_.areaCapture.setMeans(AreaCapture::Means::ownSelection);
    capture_->start();
    EXPECT_EQ(reports_, (std::vector<std::string>{"Select an area to capture and copy. Esc to cancel."}));
    EXPECT_TRUE(offers_.empty());
}

TEST_F(ScreenCaptureTest, AnotherProgramThatKeepsTheKeyboardIsReported) {
    desktop_.areaCapture.setMeans(AreaCapture::Means::ownSelection);
    capture_->start();
    desktop_.areaCapture.keepOut();
    EXPECT_EQ(reports_.back(), "Could not start area capture. Close open menus and try again.");
}

TEST_F(ScreenCaptureTest, WhereNobodyCanSelectItSaysWhy) {
    desktop_.areaCapture.setMeans(AreaCapture::Means::none);
    capture_->start();
    EXPECT_EQ(reports_, (std::vector<std::string>{"Area capture needs an X11 session"}));
}

TEST_F(ScreenCaptureTest, NobodyHasToListen) {
    capture_->report = nullptr;
    capture_->offer = nullptr;
    capture_->start();
    EXPECT_EQ(desktop_.areaCapture.starts(), 1);
}

} // namespace
} // namespace quillane

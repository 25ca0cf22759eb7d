// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/KeyboardMonitorTest.hpp"

#include "core/keyboard/ShiftEnglish.hpp"

#include <set>

namespace quillane {
namespace {

using fakes::Modifier;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyboardMonitorTest;
using ::testing::Not;

constexpr core::KeyCode keyA = 0;

// Starting and stopping.

TEST_F(KeyboardMonitorTest, StartsOneTapForKeysClicksAndScrolling) {
    EXPECT_FALSE(monitor->isRunning());
    EXPECT_TRUE(monitor->start());
    EXPECT_TRUE(monitor->isRunning());
    EXPECT_EQ(desktop.tap.mask(), 0x2401C0AU);
}

TEST_F(KeyboardMonitorTest, WithoutThePermissionItDoesNotStart) {
    desktop.withPermissions({});
    EXPECT_FALSE(monitor->start());
    EXPECT_FALSE(monitor->isRunning());
}

TEST_F(KeyboardMonitorTest, StartFailsWithATapThatIsNotEnabled) {
    desktop.tap.setStartsDisabled(true);
    EXPECT_FALSE(monitor->start());
    EXPECT_FALSE(monitor->isRunning());
}

TEST_F(KeyboardMonitorTest, StartingAgainMakesANewTap) {
    start();
    start();
    EXPECT_TRUE(monitor->isRunning());
    EXPECT_EQ(desktop.tap.startCount(), 2);
}

TEST_F(KeyboardMonitorTest, StoppedItHearsNothing) {
    start();
    monitor->stop();
    EXPECT_FALSE(monitor->isRunning());
    EXPECT_FALSE(desktop.tap.exists());
    directionChord();
    desktop.type(keyA);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, TheTapGoesWithTheMonitor) {
    start();
    monitor.reset();
    EXPECT_FALSE(desktop.tap.exists());
}

TEST_F(KeyboardMonitorTest, AChordHeldAtTheStartDoesNotFireUntilReleasedOnce) {
    pressDirectionChord();
    start();
    desktop.releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    directionChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, ALanguageChordHeldAtTheStartDoesNotFire) {
    pressLanguageChord();
    start();
    desktop.releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("language switch"));
}

TEST_F(KeyboardMonitorTest, AKeyHeldAtTheStartCompletesNoChord) {
    desktop.press(Modifier::leftControl);
    start();
    desktop.press(Modifier::rightShift).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    desktop.press(Modifier::leftOption);
    start();
    desktop.press(Modifier::leftShift).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, WorksWithoutHandlers) {
    monitor->onDirection = nullptr;
    monitor->onLanguageSwitch = nullptr;
    monitor->onInterruption = nullptr;
    monitor->onDisabled = nullptr;
    monitor->onKeyboardActivity = nullptr;
    start();
    directionChord();
    languageChord();
    desktop.type(keyA);
    desktop.tap.disable();
    EXPECT_THAT(taken(), IsEmpty());
}

// The keys that the tap holds back from applications.

TEST_F(KeyboardMonitorTest, LetterKeysAreReplaceableWhileTemporaryEnglishIsOn) {
    const auto keys = core::shiftEnglish::keyCodes();
    EXPECT_EQ(desktop.tap.replaceableKeys(), std::set<core::KeyCode>(keys.begin(), keys.end()));
    change([](auto& options) { options.shiftEnglish = false; });
    EXPECT_THAT(desktop.tap.replaceableKeys(), IsEmpty());
}

// A tap that the system disables.

TEST_F(KeyboardMonitorTest, ADisabledTapIsEnabledAgainAndReported) {
    for (const auto reason : {EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}) {
        start();
        const auto before = desktop.tap.enableCount();
        desktop.tap.disable(reason);
        EXPECT_TRUE(monitor->isRunning());
        EXPECT_EQ(desktop.tap.enableCount(), before + 1);
        EXPECT_THAT(handled, IsEmpty()) << "never inside the tap";
        EXPECT_THAT(taken(), ElementsAre("disabled"));
    }
}

TEST_F(KeyboardMonitorTest, ADisabledTapEndsTheChord) {
    start();
    pressDirectionChord();
    desktop.tap.disable();
    desktop.releaseAll();
    EXPECT_THAT(chords(), ElementsAre("disabled"));
}

TEST_F(KeyboardMonitorTest, ADisabledTapForgetsHeldKeys) {
    start();
    desktop.press(keyA);
    desktop.tap.disable(); // the release may get lost
    ASSERT_THAT(chords(), ElementsAre("disabled"));
    pressDirectionChord();
    desktop.release(Modifier::rightShift).release(Modifier::leftControl);
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, AfterADisabledTapActivityIsReportedAgain) {
    start();
    desktop.type(keyA);
    desktop.tap.disable();
    EXPECT_FALSE(monitor->keyboardEventsObserved());
    taken();
    desktop.type(keyA);
    EXPECT_THAT(taken(), Contains("activity"));
}

// Activity.

TEST_F(KeyboardMonitorTest, TheFirstKeyEventIsReportedOnce) {
    start();
    desktop.press(Modifier::leftShift);
    EXPECT_TRUE(monitor->keyboardEventsObserved());
    EXPECT_THAT(taken(), ElementsAre("activity"));
    desktop.release(Modifier::leftShift);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, ClicksAndScrollingAreNotKeyboardActivity) {
    start();
    desktop.click().scroll();
    EXPECT_FALSE(monitor->keyboardEventsObserved());
    EXPECT_THAT(taken(), Not(Contains("activity")));
}

TEST_F(KeyboardMonitorTest, ActivityIsReportedEvenWhilePaused) {
    change([](auto& options) { options.paused = true; });
    start();
    desktop.type(keyA);
    EXPECT_THAT(taken(), ElementsAre("activity"));
}

TEST_F(KeyboardMonitorTest, AfterANewStartActivityIsReportedAgain) {
    start();
    desktop.type(keyA);
    taken();
    start();
    EXPECT_FALSE(monitor->keyboardEventsObserved());
    desktop.type(keyA);
    EXPECT_THAT(taken(), Contains("activity"));
}

// Interruptions.

TEST_F(KeyboardMonitorTest, PressesClicksAndScrollingInterrupt) {
    start();
    desktop.press(keyA);
    EXPECT_THAT(taken(), ElementsAre("activity", "interruption"));
    for (const auto button : {EventType::leftMouseDown, EventType::rightMouseDown, EventType::otherMouseDown}) {
        desktop.click(button);
        EXPECT_THAT(taken(), ElementsAre("interruption"));
    }
    desktop.scroll();
    EXPECT_THAT(taken(), ElementsAre("interruption"));
}

TEST_F(KeyboardMonitorTest, PressThatIsHeldBackReachesNoMenu) {
    constexpr core::KeyCode returnKey = 36;
    constexpr core::KeyCode tab = 48;
    constexpr core::KeyCode escape = 53;
    start();
    desktop.tap.hold();
    for (const auto key : {returnKey, tab, escape}) {
        desktop.type(key);
    }
    desktop.settle();
    using enum core::UserInput;
    EXPECT_THAT(inputs, ElementsAre(typing, typing, navigation));
}

TEST_F(KeyboardMonitorTest, AnInterruptionSaysWhatTheInputMayMeanForAMenu) {
    constexpr core::KeyCode down = 125;
    start();
    desktop.type(keyA).type(down).scroll().click().click(EventType::rightMouseDown);
    desktop.press(Modifier::leftControl).click().release(Modifier::leftControl);
    desktop.switchTo("com.apple.ScreenSharing").type(keyA);
    taken();
    using enum core::UserInput;
    EXPECT_THAT(inputs,
                ElementsAre(typing, navigation, navigation, command, menuRequest, menuRequest, command, command));
}

TEST_F(KeyboardMonitorTest, ReleasesAndModifiersDoNotInterrupt) {
    start();
    desktop.press(keyA);
    taken();
    desktop.release(keyA).press(Modifier::leftCommand).release(Modifier::leftCommand);
    EXPECT_THAT(taken(), IsEmpty());
}

// When there is nothing to do.

TEST_F(KeyboardMonitorTest, PausedItLeavesEverythingAlone) {
    desktop.withInputSources({fakes::hebrew()}).withFocusedTextField();
    change([](auto& options) { options.paused = true; });
    start();
    directionChord();
    languageChord();
    desktop.press(Modifier::leftShift).type(keyA).release(Modifier::leftShift).click().scroll();
    EXPECT_THAT(taken(), ElementsAre("activity"));
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(KeyboardMonitorTest, WithEveryFeatureOffItLeavesEverythingAlone) {
    desktop.withInputSources({fakes::hebrew()}).withFocusedTextField();
    change([](auto& options) { options.shiftEnglish = options.languageSwitch = options.writingDirection = false; });
    start();
    directionChord();
    languageChord();
    desktop.press(Modifier::leftShift).type(keyA).release(Modifier::leftShift).click().scroll();
    EXPECT_THAT(taken(), ElementsAre("activity"));
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(KeyboardMonitorTest, AChordThatBeganBeforeAPauseDoesNotFireAfterIt) {
    start();
    desktop.press(Modifier::leftControl);
    change([](auto& options) { options.paused = true; });
    desktop.press(Modifier::rightShift).release(Modifier::rightShift);
    change([](auto& options) { options.paused = false; });
    desktop.release(Modifier::leftControl);
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, TheViewerOfAnotherScreenKeepsItsKeys) {
    desktop.switchTo("com.apple.ScreenSharing").withInputSources({fakes::hebrew()}).withFocusedTextField();
    start();
    languageChord();
    desktop.press(Modifier::leftShift).press(keyA);
    EXPECT_THAT(chords(), IsEmpty());
    EXPECT_EQ(desktop.replacedText(), u"");
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, TheViewerOfAnotherScreenInterruptsWithEveryEvent) {
    desktop.switchTo("com.apple.ScreenSharing");
    start();
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_THAT(taken(), ElementsAre("activity", "interruption", "interruption", "interruption"));
}

TEST_F(KeyboardMonitorTest, AnEventInTheViewerDropsPendingDeliveries) {
    desktop.switchTo("com.apple.ScreenSharing");
    change([](auto& options) { options.excludeScreenSharing = false; });
    start();
    languageChord();
    change([](auto& options) { options.excludeScreenSharing = true; });
    desktop.click();
    change([](auto& options) { options.excludeScreenSharing = false; });
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, WithoutTheExclusionTheViewerIsLikeAnyApplication) {
    desktop.switchTo("com.apple.ScreenSharing").withInputSources({fakes::hebrew()}).withFocusedTextField();
    change([](auto& options) { options.excludeScreenSharing = false; });
    start();
    languageChord();
    desktop.press(Modifier::leftShift).press(keyA);
    EXPECT_THAT(chords(), ElementsAre("language switch"));
    EXPECT_EQ(desktop.replacedText(), u"a");
}

} // namespace
} // namespace quillane

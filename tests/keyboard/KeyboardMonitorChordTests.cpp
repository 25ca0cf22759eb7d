// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/KeyboardMonitorTest.hpp"

#include <functional>

namespace quillane {
namespace {

using fakes::Modifier;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyboardMonitorTest;

constexpr core::KeyCode keyA = 0;
constexpr core::KeyCode digit1 = 18;

// The application in front.

TEST_F(KeyboardMonitorTest, WithoutAnApplicationInFrontNothingFires) {
    desktop.workspace.activateNothing();
    start();
    directionChord();
    languageChord();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, AChordHeldAcrossASwitchNeverFires) {
    start();
    pressDirectionChord();
    desktop.switchTo("com.apple.Notes").releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    pressLanguageChord();
    desktop.switchTo("com.apple.TextEdit").releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    directionChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, AKeyHeldAcrossASwitchCompletesNoChord) {
    start();
    desktop.press(Modifier::leftControl).switchTo("com.apple.Notes").press(Modifier::rightShift).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    desktop.press(Modifier::leftOption).switchTo("com.apple.TextEdit").press(Modifier::leftShift).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, AnotherProcessOfTheSameApplicationIsAnotherApplication) {
    start();
    pressDirectionChord();
    desktop.withFrontApplication("com.apple.TextEdit").releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, TheFirstChordInAnApplicationCounts) {
    start();
    desktop.switchTo("com.apple.Notes");
    directionChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, DirectionChordsWorkInSupportedApplicationsOnly) {
    start();
    desktop.switchTo("com.apple.Terminal");
    directionChord();
    EXPECT_THAT(chords(), IsEmpty());
    desktop.withFrontApplication(std::nullopt);
    directionChord();
    EXPECT_THAT(chords(), IsEmpty());
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("language switch")) << "which works everywhere";
}

// Chords.

TEST_F(KeyboardMonitorTest, EachChordFiresOnceOnItsLastRelease) {
    start();
    pressDirectionChord();
    desktop.release(Modifier::rightShift);
    EXPECT_THAT(chords(), IsEmpty());
    desktop.release(Modifier::leftControl);
    EXPECT_THAT(handled, IsEmpty()) << "never inside the tap";
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
    desktop.press(Modifier::rightControl).press(Modifier::leftShift).releaseAll();
    EXPECT_THAT(chords(), ElementsAre("direction LTR"));
    desktop.press(Modifier::rightOption).press(Modifier::rightShift).releaseAll();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("language switch"));
}

TEST_F(KeyboardMonitorTest, KeysClicksAndScrollingCancelChords) {
    start();
    const std::function<void()> presses[] = {[this] { pressDirectionChord(); }, [this] { pressLanguageChord(); }};
    for (const auto& press : presses) {
        press();
        desktop.type(digit1).releaseAll();
        EXPECT_THAT(chords(), IsEmpty());
        for (const auto button : {EventType::leftMouseDown, EventType::rightMouseDown, EventType::otherMouseDown}) {
            press();
            desktop.click(button).releaseAll();
            EXPECT_THAT(chords(), IsEmpty());
        }
        press();
        desktop.scroll().releaseAll();
        EXPECT_THAT(chords(), IsEmpty());
    }
}

TEST_F(KeyboardMonitorTest, AReleaseOfAKeyCancelsChords) {
    start();
    desktop.press(digit1);
    pressDirectionChord();
    desktop.releaseAll(); // the key first
    EXPECT_THAT(chords(), IsEmpty());
    desktop.press(digit1);
    pressLanguageChord();
    desktop.releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, AHeldKeyCancelsChords) {
    start();
    desktop.press(digit1);
    for (int turn = 0; turn < 2; ++turn) {
        pressDirectionChord();
        desktop.release(Modifier::rightShift).release(Modifier::leftControl);
        pressLanguageChord();
        desktop.release(Modifier::leftShift).release(Modifier::leftOption);
    }
    EXPECT_THAT(chords(), IsEmpty());
    desktop.release(digit1);
    directionChord();
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL", "language switch"));
}

TEST_F(KeyboardMonitorTest, AKeyWhoseReleaseWasHiddenIsNoLongerHeld) {
    start();
    desktop.press(digit1).releaseUnseen(digit1);
    directionChord();
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL", "language switch"));
}

TEST_F(KeyboardMonitorTest, KeyHeldWhileAPasswordFieldGetsTheFocusDoesNotStayHeld) {
    start();
    desktop.press(digit1);
    desktop.secureInput.setEnabled(true);
    desktop.release(digit1);
    desktop.type(digit1); // a password, of which the tap sees nothing
    directionChord();
    desktop.secureInput.setEnabled(false);
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL", "language switch"));
}

TEST_F(KeyboardMonitorTest, EachChordHasItsSwitch) {
    start();
    change([](auto& options) { options.writingDirection = false; });
    directionChord();
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("language switch"));
    change([](auto& options) {
        options.writingDirection = true;
        options.languageSwitch = false;
    });
    directionChord();
    languageChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, ADirectionChordThatBeganWhileItWasOffDoesNotFire) {
    start();
    change([](auto& options) { options.writingDirection = false; });
    pressDirectionChord();
    change([](auto& options) { options.writingDirection = true; });
    desktop.release(Modifier::rightShift).release(Modifier::leftControl);
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, SwitchingTheFeatureOffAndOnEndsADirectionChord) {
    start();
    pressDirectionChord();
    change([](auto& options) { options.writingDirection = false; });
    desktop.press(Modifier::leftCommand).release(Modifier::leftCommand);
    change([](auto& options) { options.writingDirection = true; });
    desktop.release(Modifier::rightShift).release(Modifier::leftControl);
    EXPECT_THAT(chords(), IsEmpty());
}

// Delivery after the event.

/// What may come between a chord and its delivery.
struct Hindrance {
    const char* name;
    void (*happens)(testing::MonitoredDesktop&);
};

void PrintTo(const Hindrance& hindrance, std::ostream* out) {
    *out << hindrance.name;
}

class KeyboardMonitorDeliveryTest : public KeyboardMonitorTest, public ::testing::WithParamInterface<Hindrance> {};

TEST_P(KeyboardMonitorDeliveryTest, IsDropped) {
    start();
    directionChord();
    languageChord();
    GetParam().happens(*this);
    auto left = chords();
    std::erase(left, "disabled");
    EXPECT_THAT(left, IsEmpty());
}

constexpr Hindrance hindrances[] = {
    {"Reset", [](testing::MonitoredDesktop& world) { world.monitor->reset(); }},
    {"Stop", [](testing::MonitoredDesktop& world) { world.monitor->stop(); }},
    {"Restart", [](testing::MonitoredDesktop& world) { EXPECT_TRUE(world.monitor->start()); }},
    {"MonitorGone", [](testing::MonitoredDesktop& world) { world.monitor.reset(); }},
    {"TapStopped", [](testing::MonitoredDesktop& world) { world.desktop.tap.stop(); }},
    {"TapDisabledAndEnabled", [](testing::MonitoredDesktop& world) { world.desktop.tap.disable(); }},
    {"Paused", [](testing::MonitoredDesktop& world) { world.change([](auto& options) { options.paused = true; }); }},
    {"AllOff",
     [](testing::MonitoredDesktop& world) {
         world.change(
             [](auto& options) { options.shiftEnglish = options.languageSwitch = options.writingDirection = false; });
     }},
    {"OtherApplication", [](testing::MonitoredDesktop& world) { world.desktop.switchTo("com.apple.Notes"); }},
    {"SwitchThatIsLearnedOfLater",
     [](testing::MonitoredDesktop& world) {
         auto& workspace = world.desktop.workspace;
         workspace.activateUnnoticed(workspace.open("com.apple.TextEdit"));
     }},
    {"NoApplication", [](testing::MonitoredDesktop& world) { world.desktop.workspace.activateNothing(); }},
    {"ApplicationQuit",
     [](testing::MonitoredDesktop& world) { world.desktop.workspace.quit(world.desktop.frontPid()); }},
    {"ThereAndBackWithAnEvent",
     [](testing::MonitoredDesktop& world) {
         world.desktop.switchTo("com.apple.Notes").click().switchTo("com.apple.TextEdit");
     }},
};

INSTANTIATE_TEST_SUITE_P(Hindrances, KeyboardMonitorDeliveryTest, ::testing::ValuesIn(hindrances),
                         [](const auto& row) { return row.param.name; });

TEST_F(KeyboardMonitorTest, ADeliveryIsMadeWhenNothingHinders) {
    start();
    directionChord();
    languageChord();
    EXPECT_EQ(desktop.queue.postedCount(), 3U) << "with the activity";
    EXPECT_THAT(taken(), ElementsAre("activity", "direction RTL", "language switch"));
}

TEST_F(KeyboardMonitorTest, ADirectionIsDroppedWhenTheApplicationIsNoLongerSupported) {
    start();
    directionChord();
    languageChord();
    desktop.workspace.setBundleID(desktop.frontPid(), "org.example.Editor");
    EXPECT_THAT(chords(), ElementsAre("language switch"));
}

TEST_F(KeyboardMonitorTest, TheProgramsOwnTextBoxIsADirectionTargetWhileItHasTheFocus) {
    bool focused = true;
    monitor->isOwnTextBoxFocused = [&] { return focused; };
    start();
    desktop.switchTo("com.quillane.app");
    directionChord();
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
    directionChord();
    focused = false; // before the delivery
    EXPECT_THAT(chords(), IsEmpty());
    directionChord();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(KeyboardMonitorTest, TypingAfterAChordDoesNotHinderIt) {
    start();
    directionChord();
    desktop.type(keyA);
    EXPECT_THAT(chords(), ElementsAre("direction RTL"));
}

TEST_F(KeyboardMonitorTest, OtherNoticesAreDroppedWithTheMonitorOnly) {
    start();
    desktop.press(keyA);
    monitor->reset();
    EXPECT_THAT(taken(), ElementsAre("activity", "interruption"));
    desktop.press(keyA);
    monitor.reset();
    EXPECT_THAT(taken(), IsEmpty());
}

} // namespace
} // namespace quillane

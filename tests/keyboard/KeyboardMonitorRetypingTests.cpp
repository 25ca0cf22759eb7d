// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/KeyboardMonitorTest.hpp"

namespace quillane {
namespace {

using namespace std::chrono_literals;
using fakes::Modifier;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr core::KeyCode keyA = 0;
constexpr core::KeyCode keyB = 11;
constexpr core::KeyCode leftArrow = 123;

class RetypingMonitorTest : public testing::KeyboardMonitorTest {
protected:
    RetypingMonitorTest() { monitor->setRetyping(true); }

    void retypingChord() { desktop.press(Modifier::leftOption).press(Modifier::rightShift).releaseAll(); }

    /// What the chord is delivered with.
    std::vector<std::string> pressed() {
        retypingChord();
        return chords();
    }
};

TEST_F(RetypingMonitorTest, ChordComesWithTheNumberOfTypedKeys) {
    start();
    desktop.type(keyA).type(keyB).type(keyA);
    EXPECT_THAT(pressed(), ElementsAre("retyping 3"));
    EXPECT_THAT(pressed(), ElementsAre("retyping 3")) << "the chord types nothing";
}

TEST_F(RetypingMonitorTest, ClicksCursorKeysAndOtherApplicationsStartTheCountAgain) {
    start();
    desktop.type(keyA).click();
    EXPECT_THAT(pressed(), ElementsAre("retyping 0"));
    desktop.type(keyA).type(leftArrow).type(keyA);
    EXPECT_THAT(pressed(), ElementsAre("retyping 1"));
    desktop.switchTo("com.apple.Notes").type(keyA).switchTo("com.apple.TextEdit");
    EXPECT_THAT(pressed(), ElementsAre("retyping 0"));
    desktop.type(keyA).scroll();
    EXPECT_THAT(pressed(), ElementsAre("retyping 1")) << "scrolling leaves the cursor where it is";
    desktop.queue.advance(30s);
    EXPECT_THAT(pressed(), ElementsAre("retyping 0"));
}

TEST_F(RetypingMonitorTest, KeysInTheChordCancelIt) {
    start();
    desktop.press(Modifier::leftOption).press(Modifier::rightShift).type(keyA).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
    desktop.press(keyA).press(Modifier::leftOption).press(Modifier::rightShift).releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

TEST_F(RetypingMonitorTest, OtherChordsAreTheirOwn) {
    start();
    languageChord();
    directionChord();
    EXPECT_THAT(chords(), ElementsAre("language switch", "direction RTL"));
    EXPECT_THAT(pressed(), ElementsAre("retyping 0"));
}

TEST_F(RetypingMonitorTest, ItsOwnSwitchDecides) {
    change([](core::FeatureOptions& options) {
        options.shiftEnglish = options.languageSwitch = options.writingDirection = false;
    });
    start();
    EXPECT_THAT(pressed(), ElementsAre("retyping 0")) << "the other features are off";
    monitor->setRetyping(false);
    EXPECT_THAT(pressed(), IsEmpty());
    change([](core::FeatureOptions& options) { options.shiftEnglish = true; });
    EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(RetypingMonitorTest, PauseAndRemoteDesktopsTurnItOff) {
    start();
    change([](core::FeatureOptions& options) { options.paused = true; });
    EXPECT_THAT(pressed(), IsEmpty());
    change([](core::FeatureOptions& options) { options.paused = false; });
    desktop.switchTo("com.apple.ScreenSharing");
    EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(RetypingMonitorTest, ChordHeldAcrossASwitchNeverFires) {
    start();
    desktop.press(Modifier::leftOption).press(Modifier::rightShift).switchTo("com.apple.Notes").releaseAll();
    EXPECT_THAT(chords(), IsEmpty());
}

} // namespace
} // namespace quillane

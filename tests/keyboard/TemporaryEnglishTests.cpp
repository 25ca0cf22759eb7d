// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/MonitoredDesktop.hpp"

#include "core/keyboard/ShiftEnglish.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using fakes::Modifier;
using ::testing::IsEmpty;

constexpr core::KeyCode keyA = 0;
constexpr core::KeyCode keyS = 1;
constexpr core::KeyCode keyD = 2;
constexpr core::KeyCode digit1 = 18;

/// A Hebrew source and a focused text field: Shift types English.
class TemporaryEnglishTest : public ::testing::Test, protected testing::MonitoredDesktop {
protected:
    TemporaryEnglishTest() {
        desktop.withFrontApplication("org.example.Editor")
            .withInputSources({fakes::hebrew(), fakes::english(), fakes::arabic()})
            .withFocusedTextField();
        EXPECT_TRUE(monitor->start());
    }

    /// The texts that the key's events were passed on with, in order: "-" for its own.
    [[nodiscard]] std::string textsOf(core::KeyCode key) const {
        std::string texts;
        for (const auto& event : desktop.delivered()) {
            if (event.keyCode == key && (event.type == EventType::keyDown || event.type == EventType::keyUp)) {
                texts += event.replacementText ? static_cast<char>(*event.replacementText) : '-';
            }
        }
        return texts;
    }
};

TEST_F(TemporaryEnglishTest, ShiftTypesLowerCaseLettersAndTheReleasesMatch) {
    desktop.press(Modifier::leftShift).type(keyA).type(keyS).type(keyD).release(Modifier::leftShift);
    EXPECT_EQ(desktop.replacedText(), u"asd");
    EXPECT_EQ(textsOf(keyA) + textsOf(keyS) + textsOf(keyD), "aassdd");
}

TEST_F(TemporaryEnglishTest, KeysOfAPasswordKeepTheirOwnTextAlsoWhenAnEarlierReleaseWasHidden) {
    desktop.press(Modifier::leftShift).press(keyA);
    desktop.secureInput.setEnabled(true);
    desktop.release(keyA).type(keyS).release(Modifier::leftShift).press(keyA);
    desktop.secureInput.setEnabled(false);
    desktop.release(keyA);
    EXPECT_EQ(textsOf(keyS), "--");
    EXPECT_EQ(textsOf(keyA), "a---");
}

TEST_F(TemporaryEnglishTest, EitherShiftDoes) {
    desktop.press(Modifier::rightShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"a");
}

TEST_F(TemporaryEnglishTest, EveryLetterKeyDoes) {
    desktop.press(Modifier::leftShift);
    for (const auto key : core::shiftEnglish::keyCodes()) {
        desktop.type(key);
    }
    EXPECT_EQ(desktop.replacedText().size(), 26U);
}

TEST_F(TemporaryEnglishTest, WithoutShiftNothingIsTouched) {
    desktop.type(keyA);
    EXPECT_EQ(textsOf(keyA), "--");
}

TEST_F(TemporaryEnglishTest, ShortcutsAreLeftAlone) {
    for (const auto modifier :
         {Modifier::leftCommand, Modifier::rightCommand, Modifier::leftControl, Modifier::rightControl,
          Modifier::leftOption, Modifier::rightOption, Modifier::function}) {
        desktop.press(Modifier::leftShift).press(modifier).type(keyA).releaseAll();
    }
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(TemporaryEnglishTest, OtherKeysAreLeftAlone) {
    desktop.press(Modifier::leftShift).type(digit1);
    EXPECT_EQ(textsOf(digit1), "--");
}

TEST_F(TemporaryEnglishTest, WithALeftToRightSourceNothingIsTouched) {
    desktop.inputSources.switchFromOutside(fakes::english());
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"");
    desktop.inputSources.switchFromOutside(fakes::arabic());
    desktop.type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"a");
}

TEST_F(TemporaryEnglishTest, WithoutASourceNothingIsTouched) {
    desktop.inputSources.setCurrentReadable(false);
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(TemporaryEnglishTest, PasswordsAreLeftAlone) {
    desktop.withFocusedPasswordField();
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(TemporaryEnglishTest, WithoutAFocusedFieldNothingIsTouched) {
    desktop.accessibility.focus(desktop.frontPid(), nullptr);
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(TemporaryEnglishTest, AnApplicationThatHangsGetsItsKeysUntouched) {
    desktop.accessibility.stopAnswering(desktop.frontPid());
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(textsOf(keyA), "--");
}

TEST_F(TemporaryEnglishTest, SwitchedOffNothingIsTouched) {
    change([](auto& options) { options.shiftEnglish = false; });
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_EQ(desktop.replacedText(), u"");
}

TEST_F(TemporaryEnglishTest, AHeldKeyRepeatsItsLetter) {
    desktop.press(Modifier::leftShift).press(keyA).press(keyA).press(keyA).release(keyA);
    EXPECT_EQ(textsOf(keyA), "aaaa");
}

TEST_F(TemporaryEnglishTest, TheReleaseMatchesThePressWhenShiftIsReleasedFirst) {
    desktop.press(Modifier::leftShift).press(keyA).release(Modifier::leftShift).release(keyA);
    EXPECT_EQ(textsOf(keyA), "aa");
}

TEST_F(TemporaryEnglishTest, TheReleaseMatchesThePressWhenTheSourceChangesBetween) {
    desktop.press(Modifier::leftShift).press(keyA);
    desktop.inputSources.switchFromOutside(fakes::english());
    desktop.release(keyA);
    EXPECT_EQ(textsOf(keyA), "aa");
}

TEST_F(TemporaryEnglishTest, AKeyPressedWithoutShiftIsReleasedAsItself) {
    desktop.press(keyA).press(Modifier::leftShift).release(keyA);
    EXPECT_EQ(textsOf(keyA), "--");
}

TEST_F(TemporaryEnglishTest, AReleaseThatGotLostLeavesNothingBehind) {
    desktop.press(Modifier::leftShift).press(keyA); // its release never comes
    desktop.release(Modifier::leftShift);
    desktop.press(keyA).release(keyA);
    EXPECT_EQ(textsOf(keyA), "a--");
}

TEST_F(TemporaryEnglishTest, ARepetitionWithoutShiftIsItsOwnAgain) {
    desktop.press(Modifier::leftShift).press(keyA).release(Modifier::leftShift).press(keyA).release(keyA);
    EXPECT_EQ(textsOf(keyA), "a--");
}

TEST_F(TemporaryEnglishTest, AReleaseInAnotherApplicationIsItsOwn) {
    desktop.press(Modifier::leftShift).press(keyA).switchTo("com.apple.Notes").release(keyA);
    EXPECT_EQ(textsOf(keyA), "a-");
}

TEST_F(TemporaryEnglishTest, ReleaseOnceMatchesOnce) {
    desktop.press(Modifier::leftShift).type(keyA).release(Modifier::leftShift).type(keyA);
    EXPECT_EQ(textsOf(keyA), "aa--");
}

TEST_F(TemporaryEnglishTest, UntouchedKeysAskNobody) {
    desktop.type(keyA).press(Modifier::leftShift).type(digit1);
    desktop.press(Modifier::leftCommand).type(keyA).releaseAll().click().scroll();
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
    EXPECT_EQ(desktop.inputSources.currentReadCount(), 0);
}

TEST_F(TemporaryEnglishTest, ALeftToRightSourceAsksNoApplication) {
    desktop.inputSources.switchFromOutside(fakes::english());
    desktop.press(Modifier::leftShift).type(keyA);
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
    EXPECT_EQ(desktop.inputSources.currentReadCount(), 1);
}

TEST_F(TemporaryEnglishTest, NothingIsSwallowed) {
    desktop.press(Modifier::leftShift).type(keyA).type(digit1).release(Modifier::leftShift).click().scroll();
    EXPECT_EQ(desktop.delivered().size(), 8U);
}

} // namespace
} // namespace quillane

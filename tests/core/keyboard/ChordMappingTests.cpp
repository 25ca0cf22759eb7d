// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/LanguageSwitchChord.hpp"
#include "core/keyboard/RetypingChord.hpp"
#include "core/keyboard/WritingDirectionChord.hpp"

#include <gtest/gtest.h>

#include <initializer_list>

namespace quillane::core {
namespace {

constexpr EventFlags leftShift = 0x20002;
constexpr EventFlags rightShift = 0x20004;
constexpr EventFlags leftControl = 0x40001;
constexpr EventFlags rightControl = 0x42000;
constexpr EventFlags leftOption = 0x80020;
constexpr EventFlags rightOption = 0x80040;
constexpr EventFlags command = 0x100008;
constexpr EventFlags fn = 0x800000;
constexpr EventFlags capsLock = 0x10000;

constexpr auto rightToLeft = WritingDirection::rightToLeft;
constexpr auto leftToRight = WritingDirection::leftToRight;

std::optional<WritingDirection> direction(std::initializer_list<EventFlags> sequence) {
    WritingDirectionChord chord;
    for (const auto rawFlags : sequence) {
        EXPECT_EQ(chord.update(rawFlags), std::nullopt);
    }
    return chord.update(0);
}

bool switches(std::initializer_list<EventFlags> sequence) {
    LanguageSwitchChord chord;
    for (const auto rawFlags : sequence) {
        EXPECT_FALSE(chord.update(rawFlags));
    }
    return chord.update(0);
}

bool retypes(std::initializer_list<EventFlags> sequence) {
    RetypingChord chord;
    for (const auto rawFlags : sequence) {
        EXPECT_FALSE(chord.update(rawFlags));
    }
    return chord.update(0);
}

TEST(WritingDirectionChord, EitherControlWithAShift) {
    EXPECT_EQ(direction({leftControl, leftControl | rightShift, leftControl}), rightToLeft);
    EXPECT_EQ(direction({rightControl, rightControl | rightShift, rightControl}), rightToLeft);
    EXPECT_EQ(direction({leftControl, leftControl | leftShift, leftControl}), leftToRight);
    EXPECT_EQ(direction({rightControl, rightControl | leftShift, rightControl}), leftToRight);
}

TEST(WritingDirectionChord, RightOptionWithRightShift) {
    EXPECT_EQ(direction({rightOption, rightOption | rightShift, rightShift}), rightToLeft);
}

TEST(WritingDirectionChord, RightOptionWithLeftShiftIsCancelled) {
    EXPECT_EQ(direction({rightOption, rightOption | leftShift, rightOption}), std::nullopt);
    EXPECT_EQ(direction({rightOption | leftShift, rightOption, rightOption | rightShift}), std::nullopt);
}

TEST(WritingDirectionChord, LeftOptionHasNoPart) {
    EXPECT_EQ(direction({leftOption, leftOption | rightShift, leftOption}), std::nullopt);
    EXPECT_EQ(direction({leftOption | rightOption, leftOption | rightOption | rightShift}), std::nullopt);
}

TEST(WritingDirectionChord, ControlAndRightOptionTogetherDoNotFire) {
    EXPECT_EQ(direction({leftControl, leftControl | rightOption, leftControl | rightOption | rightShift}),
              std::nullopt);
}

TEST(WritingDirectionChord, ForeignModifiersCancel) {
    for (const auto foreign : {command, fn, leftOption, rightOption}) {
        EXPECT_EQ(direction({leftControl | rightShift, leftControl | rightShift | foreign, leftControl | rightShift}),
                  std::nullopt)
            << std::hex << foreign;
    }
    for (const auto foreign : {command, fn, leftOption, leftControl, leftShift}) {
        EXPECT_EQ(direction({rightOption | rightShift, rightOption | rightShift | foreign, rightOption | rightShift}),
                  std::nullopt)
            << std::hex << foreign;
    }
}

TEST(WritingDirectionChord, CapsLockDoesNotCount) {
    WritingDirectionChord chord;
    EXPECT_EQ(chord.update(capsLock | leftControl | rightShift), std::nullopt);
    EXPECT_EQ(chord.update(capsLock), rightToLeft);
}

TEST(WritingDirectionChord, ShiftOfUnknownSideCancels) {
    EXPECT_EQ(direction({leftControl, leftControl | 0x20000, leftControl | rightShift}), std::nullopt);
    EXPECT_EQ(direction({rightOption, rightOption | 0x20000, rightOption | rightShift}), std::nullopt);
}

TEST(WritingDirectionChord, OptionOfUnknownSideCancels) {
    EXPECT_EQ(direction({0x80000 | rightShift, rightShift}), std::nullopt);
}

TEST(WritingDirectionChord, CancelReachesBothChords) {
    for (const auto held : {leftControl | rightShift, rightOption | rightShift}) {
        WritingDirectionChord chord;
        EXPECT_EQ(chord.update(held), std::nullopt);
        chord.cancel();
        EXPECT_EQ(chord.update(0), std::nullopt);
        EXPECT_EQ(chord.update(held), std::nullopt);
        EXPECT_EQ(chord.update(0), rightToLeft) << "the next one counts again";
    }
}

TEST(WritingDirectionChord, CancelWithNothingHeldDoesNothing) {
    WritingDirectionChord chord;
    chord.cancel();
    EXPECT_EQ(chord.update(leftControl | leftShift), std::nullopt);
    EXPECT_EQ(chord.update(0), leftToRight);
}

TEST(WritingDirectionChord, ResetForgetsBothChords) {
    for (const auto held : {leftControl | rightShift, rightOption | rightShift}) {
        WritingDirectionChord chord;
        EXPECT_EQ(chord.update(held), std::nullopt);
        chord.reset();
        EXPECT_EQ(chord.update(0), std::nullopt);
    }
}

TEST(WritingDirectionChord, ResetEndsACancellation) {
    WritingDirectionChord chord;
    EXPECT_EQ(chord.update(command), std::nullopt);
    chord.reset();
    EXPECT_EQ(chord.update(leftControl | rightShift), std::nullopt);
    EXPECT_EQ(chord.update(0), rightToLeft);
}

TEST(LanguageSwitchChord, LeftOptionWithLeftShift) {
    EXPECT_TRUE(switches({leftOption, leftOption | leftShift, leftOption}));
    EXPECT_TRUE(switches({leftShift, leftOption | leftShift, leftShift}));
}

TEST(LanguageSwitchChord, LoneKeysDoNothing) {
    EXPECT_FALSE(switches({leftOption}));
    EXPECT_FALSE(switches({leftShift}));
}

TEST(LanguageSwitchChord, OtherSidesDoNothing) {
    EXPECT_FALSE(switches({leftOption, leftOption | rightShift, leftOption}));
    EXPECT_FALSE(switches({rightOption, rightOption | leftShift, rightOption}));
    EXPECT_FALSE(switches({rightOption, rightOption | rightShift, rightOption}));
    EXPECT_FALSE(switches({leftOption | leftShift, leftOption | leftShift | rightShift, leftOption | leftShift}));
    EXPECT_FALSE(switches({leftOption | leftShift, leftOption | leftShift | rightOption, leftOption | leftShift}));
}

TEST(LanguageSwitchChord, ForeignModifiersCancel) {
    for (const auto foreign : {command, fn, leftControl, rightControl}) {
        EXPECT_FALSE(switches({leftOption | leftShift, leftOption | leftShift | foreign, leftOption | leftShift}))
            << std::hex << foreign;
        EXPECT_FALSE(switches({foreign, leftOption | foreign, leftOption | leftShift})) << std::hex << foreign;
    }
}

TEST(LanguageSwitchChord, KeysOfUnknownSideCancel) {
    EXPECT_FALSE(switches({leftOption, leftOption | 0x20000, leftOption | leftShift}));
    EXPECT_FALSE(switches({0x80000, leftOption | leftShift}));
    EXPECT_FALSE(switches({leftShift, leftShift | 0x80000, leftOption | leftShift}));
}

TEST(LanguageSwitchChord, CancelHoldsUntilTheRelease) {
    LanguageSwitchChord chord;
    chord.cancel();
    EXPECT_FALSE(chord.update(leftOption | leftShift));
    chord.cancel();
    EXPECT_FALSE(chord.update(0));
    EXPECT_FALSE(chord.update(leftOption | leftShift));
    EXPECT_TRUE(chord.update(0));
}

TEST(RetypingChord, LeftOptionWithRightShift) {
    EXPECT_TRUE(retypes({leftOption, leftOption | rightShift, leftOption}));
    EXPECT_TRUE(retypes({rightShift, leftOption | rightShift, rightShift}));
    EXPECT_TRUE(retypes({capsLock | leftOption, capsLock | leftOption | rightShift}));
}

TEST(RetypingChord, LoneKeysDoNothing) {
    EXPECT_FALSE(retypes({leftOption}));
    EXPECT_FALSE(retypes({rightShift}));
}

TEST(RetypingChord, ChordsOfOthersDoNothing) {
    EXPECT_FALSE(retypes({leftOption, leftOption | leftShift, leftOption}));
    EXPECT_FALSE(retypes({rightOption, rightOption | rightShift, rightOption}));
    EXPECT_FALSE(retypes({leftControl, leftControl | rightShift, leftControl}));
    EXPECT_FALSE(retypes({leftOption | rightShift, leftOption | leftShift | rightShift, leftOption | rightShift}));
    EXPECT_FALSE(retypes({leftOption | rightShift, leftOption | rightOption | rightShift, leftOption | rightShift}));
}

TEST(RetypingChord, ForeignModifiersCancel) {
    for (const auto foreign : {command, fn, leftControl, rightControl}) {
        EXPECT_FALSE(retypes({leftOption | rightShift, leftOption | rightShift | foreign, leftOption | rightShift}))
            << std::hex << foreign;
        EXPECT_FALSE(retypes({foreign, leftOption | foreign, leftOption | rightShift})) << std::hex << foreign;
    }
}

TEST(RetypingChord, KeysOfUnknownSideCancel) {
    EXPECT_FALSE(retypes({leftOption, leftOption | 0x20000, leftOption | rightShift}));
    EXPECT_FALSE(retypes({0x80000, leftOption | rightShift}));
}

TEST(RetypingChord, CancelHoldsUntilTheRelease) {
    RetypingChord chord;
    EXPECT_FALSE(chord.update(leftOption | rightShift));
    chord.cancel();
    EXPECT_FALSE(chord.update(0));
    EXPECT_FALSE(chord.update(leftOption | rightShift));
    EXPECT_TRUE(chord.update(0));
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/DirectionChord.hpp"

#include <gtest/gtest.h>

#include <initializer_list>

namespace quillane::core {
namespace {

constexpr ModifierState released{};
constexpr ModifierState control{.control = true};
constexpr ModifierState leftShift{.leftShift = true};
constexpr ModifierState rightShift{.rightShift = true};
constexpr ModifierState bothShifts{.leftShift = true, .rightShift = true};
constexpr ModifierState controlLeft{.control = true, .leftShift = true};
constexpr ModifierState controlRight{.control = true, .rightShift = true};
constexpr ModifierState controlBoth{.control = true, .leftShift = true, .rightShift = true};
constexpr ModifierState controlRightOther{.control = true, .rightShift = true, .other = true};
constexpr ModifierState other{.other = true};

constexpr auto rightToLeft = WritingDirection::rightToLeft;
constexpr auto leftToRight = WritingDirection::leftToRight;

/// Feeds the states and then the release of everything; only the release may fire.
std::optional<WritingDirection> afterRelease(DirectionChord& chord, std::initializer_list<ModifierState> states) {
    for (const auto& state : states) {
        EXPECT_EQ(chord.update(state), std::nullopt);
    }
    return chord.update(released);
}

std::optional<WritingDirection> afterRelease(std::initializer_list<ModifierState> states) {
    DirectionChord chord;
    return afterRelease(chord, states);
}

TEST(DirectionChord, RightShiftFiresRightToLeftOnTheLastRelease) {
    EXPECT_EQ(afterRelease({control, controlRight, control}), rightToLeft);
}

TEST(DirectionChord, LeftShiftFiresLeftToRightOnTheLastRelease) {
    EXPECT_EQ(afterRelease({control, controlLeft, control}), leftToRight);
}

TEST(DirectionChord, TheOrderOfPressingDoesNotMatter) {
    EXPECT_EQ(afterRelease({rightShift, controlRight, control}), rightToLeft);
    EXPECT_EQ(afterRelease({leftShift, controlLeft, control}), leftToRight);
}

TEST(DirectionChord, TheOrderOfReleasingDoesNotMatter) {
    EXPECT_EQ(afterRelease({control, controlRight, rightShift}), rightToLeft);
    EXPECT_EQ(afterRelease({control, controlLeft, leftShift}), leftToRight);
    EXPECT_EQ(afterRelease({controlRight}), rightToLeft) << "both at once";
}

TEST(DirectionChord, FiresOnce) {
    DirectionChord chord;
    EXPECT_EQ(afterRelease(chord, {control, controlRight}), rightToLeft);
    EXPECT_EQ(chord.update(released), std::nullopt);
}

TEST(DirectionChord, LoneKeysArmNothing) {
    EXPECT_EQ(afterRelease({control}), std::nullopt);
    EXPECT_EQ(afterRelease({leftShift}), std::nullopt);
    EXPECT_EQ(afterRelease({rightShift}), std::nullopt);
    EXPECT_EQ(afterRelease({leftShift, control}), std::nullopt);
}

TEST(DirectionChord, LoneKeysBeforeTheChordDoNoHarm) {
    EXPECT_EQ(afterRelease({leftShift, control, controlRight}), rightToLeft);
}

TEST(DirectionChord, ChangeOfShiftWithoutReleaseCancels) {
    EXPECT_EQ(afterRelease({control, controlLeft, control, controlRight, control}), std::nullopt);
    EXPECT_EQ(afterRelease({control, controlLeft, controlRight}), std::nullopt);
}

TEST(DirectionChord, TheSameShiftAgainKeepsTheChord) {
    EXPECT_EQ(afterRelease({control, controlRight, control, controlRight, control}), rightToLeft);
}

TEST(DirectionChord, ControlAgainKeepsTheChord) {
    EXPECT_EQ(afterRelease({control, controlRight, rightShift, controlRight, rightShift}), rightToLeft);
}

TEST(DirectionChord, BothShiftsCancel) {
    EXPECT_EQ(afterRelease({control, controlRight, controlBoth, controlRight, control}), std::nullopt);
    EXPECT_EQ(afterRelease({bothShifts, rightShift, controlRight}), std::nullopt);
}

TEST(DirectionChord, OtherModifierCancelsUntilEverythingIsReleased) {
    DirectionChord chord;
    EXPECT_EQ(afterRelease(chord, {control, controlRight, controlRightOther, controlRight, control}), std::nullopt);
    EXPECT_EQ(afterRelease(chord, {control, controlRight}), rightToLeft);
}

TEST(DirectionChord, OtherModifierBeforeTheChordCancels) {
    EXPECT_EQ(afterRelease({other, control, controlRight}), std::nullopt);
}

TEST(DirectionChord, NewKeyDuringTheReleaseCancels) {
    EXPECT_EQ(afterRelease({control, controlRight, leftShift}), std::nullopt);
    EXPECT_EQ(afterRelease({control, controlRight, rightShift, control}), std::nullopt);
    EXPECT_EQ(afterRelease({control, controlLeft, rightShift}), std::nullopt);
}

TEST(DirectionChord, CancelHoldsUntilEverythingIsReleased) {
    DirectionChord chord;
    EXPECT_EQ(chord.update(controlRight), std::nullopt);
    chord.cancel();
    EXPECT_EQ(afterRelease(chord, {control, controlRight, control}), std::nullopt);
    EXPECT_EQ(afterRelease(chord, {control, controlRight, control}), rightToLeft);
}

TEST(DirectionChord, CancelWithNothingHeldDoesNothing) {
    DirectionChord chord;
    chord.cancel();
    EXPECT_EQ(chord, DirectionChord());
}

TEST(DirectionChord, ResetForgetsHeldKeys) {
    DirectionChord chord;
    EXPECT_EQ(chord.update(controlRight), std::nullopt);
    chord.reset();
    EXPECT_EQ(chord, DirectionChord());
    EXPECT_EQ(chord.update(released), std::nullopt);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypedStrokes.hpp"

#include <gtest/gtest.h>

#include <initializer_list>

namespace quillane::core {
namespace {

using namespace std::chrono_literals;

constexpr KeyCode keyA = 0;
constexpr KeyCode keyReturn = 36;
constexpr KeyCode keyTab = 48;
constexpr KeyCode keySpace = 49;
constexpr KeyCode backspace = 51;
constexpr KeyCode keypad1 = 83;
constexpr KeyCode home = 115;
constexpr KeyCode forwardDelete = 117;
constexpr KeyCode leftArrow = 123;

class TypedStrokesTest : public ::testing::Test {
protected:
    void type(std::initializer_list<KeyCode> keys, EventFlags flags = 0) {
        for (const auto key : keys) {
            strokes.notePress(key, flags, now);
        }
    }

    [[nodiscard]] std::size_t count() const { return strokes.count(now); }

    TypedStrokes strokes;
    TypedStrokes::Time now{1h};
};

TEST_F(TypedStrokesTest, CharactersCount) {
    EXPECT_EQ(count(), 0U);
    type({keyA, keySpace, keypad1});
    EXPECT_EQ(count(), 3U);
    type({keyA}, flags::shift | flags::leftShift);
    type({keyA}, flags::option | flags::rightOption);
    EXPECT_EQ(count(), 5U);
}

TEST_F(TypedStrokesTest, EraseTakesOneBack) {
    type({keyA, keyA, backspace});
    EXPECT_EQ(count(), 1U);
    type({backspace, backspace, backspace, keyA});
    EXPECT_EQ(count(), 1U);
    type({forwardDelete});
    EXPECT_EQ(count(), 1U) << "what follows the cursor was erased";
}

TEST_F(TypedStrokesTest, WhateverMayMoveTheCursorStartsAgain) {
    for (const auto key : {leftArrow, home, keyReturn, keyTab}) {
        type({keyA, key});
        EXPECT_EQ(count(), 0U) << key;
    }
    for (const auto modifier : {flags::control, flags::command, flags::option | flags::leftOption}) {
        type({keyA});
        type({keyA}, modifier);
        EXPECT_EQ(count(), 0U) << modifier;
    }
    type({keyA, keyA});
    type({backspace}, flags::option | flags::rightOption);
    EXPECT_EQ(count(), 0U) << "a word was erased";
    type({keyA});
    strokes.reset();
    EXPECT_EQ(count(), 0U);
}

TEST_F(TypedStrokesTest, RestOfThirtySecondsStartsAgain) {
    type({keyA});
    now += 29s;
    EXPECT_EQ(count(), 1U);
    type({keyA});
    now += 29s;
    EXPECT_EQ(count(), 2U);
    now += 1s;
    EXPECT_EQ(count(), 0U);
    type({keyA});
    EXPECT_EQ(count(), 1U);
}

} // namespace
} // namespace quillane::core

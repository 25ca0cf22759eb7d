// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/KeyHold.hpp"

#include <gtest/gtest.h>

#include <array>

namespace quillane::core {
namespace {

// Key codes of macOS.
constexpr KeyCode letter = 0;
constexpr KeyCode tab = 48;
constexpr KeyCode escape = 53;

TEST(KeyHold, KeysThatTypeEraseOrMoveAreHeld) {
    for (const auto key : std::to_array<KeyCode>(
             {letter, 18, 36, tab, 49, 51, 76, 87, 117, 119, 123})) { // …, Return, space, Delete, keypad, End, arrow
        EXPECT_TRUE(keyHold::holds(key, 0)) << key;
        EXPECT_TRUE(keyHold::holds(key, flags::shift | flags::leftShift)) << key;
        EXPECT_TRUE(keyHold::holds(key, flags::option | flags::rightOption)) << key;
    }
}

TEST(KeyHold, EscapeReachesTheMenu) {
    EXPECT_FALSE(keyHold::holds(escape, 0));
    EXPECT_FALSE(keyHold::holds(escape, flags::shift));
}

TEST(KeyHold, ShortcutsAndFunctionKeysAreNotHeld) {
    for (const auto modifiers : {flags::control | flags::leftControl, flags::command | flags::leftCommand,
                                 flags::option | flags::leftOption}) {
        for (const auto key : std::to_array<KeyCode>({letter, tab, 36, 123})) {
            EXPECT_FALSE(keyHold::holds(key, modifiers)) << key << ' ' << modifiers;
        }
    }
    for (const auto key : std::to_array<KeyCode>({122, 109, 110})) { // F1, F10, the menu key
        EXPECT_FALSE(keyHold::holds(key, 0)) << key;
    }
}

} // namespace
} // namespace quillane::core

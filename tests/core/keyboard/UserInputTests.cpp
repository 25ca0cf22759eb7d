// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/UserInput.hpp"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace quillane::core {
namespace {

// Key codes of macOS: A, space, Delete, keypad 5, forward Delete.
constexpr std::array<KeyCode, 5> typingKeys{0, 49, 51, 87, 117};

TEST(UserInput, KeysOfCharactersType) {
    for (const auto key : typingKeys) {
        for (const auto modifiers :
             {EventFlags{0}, flags::shift | flags::leftShift, flags::capsLock, flags::option | flags::rightOption}) {
            EXPECT_EQ(userInput(key, modifiers), UserInput::typing) << key << ' ' << modifiers;
        }
    }
}

TEST(UserInput, NoOtherKeyTypes) {
    // Letters, digits, punctuation, space and Delete; the keypad; Japanese keys; forward Delete.
    std::set<KeyCode> typing;
    for (KeyCode key = 0; key <= 51; ++key) {
        typing.insert(key);
    }
    typing.insert({65, 66, 67, 68, 69, 75, 78, 117});
    for (KeyCode key = 81; key <= 95; ++key) {
        typing.insert(key);
    }
    for (const auto key : std::to_array<KeyCode>({36, 48, 90})) { // Return, Tab, F20
        typing.erase(key);
    }
    for (KeyCode key = 0; key < 0x200; ++key) {
        EXPECT_EQ(userInput(key, 0) == UserInput::typing, typing.contains(key)) << key;
    }
}

TEST(UserInput, ShortcutsAreCommands) {
    for (const auto modifiers : {flags::control | flags::leftControl, flags::command | flags::leftCommand,
                                 flags::option | flags::leftOption}) {
        EXPECT_EQ(userInput(0, modifiers), UserInput::command) << modifiers;
    }
}

TEST(UserInput, TabAndFunctionKeysAreCommands) {
    for (const auto key :
         std::to_array<KeyCode>({48, 122, 109, 90, 0x1FF})) { // Tab, F1, F10, F20, a key that macOS does not have
        EXPECT_EQ(userInput(key, 0), UserInput::command) << key;
    }
}

TEST(UserInput, ArrowsReturnAndEscapeNavigate) {
    for (const auto key : std::to_array<KeyCode>({36, 53, 76, 115, 116, 119, 121, 123, 124, 125, 126})) {
        EXPECT_EQ(userInput(key, 0), UserInput::navigation) << key;
        EXPECT_EQ(userInput(key, flags::shift), UserInput::navigation) << key;
    }
}

TEST(UserInput, TheMenuKeyAndShiftF10RequestTheContextMenu) {
    EXPECT_EQ(userInput(110, 0), UserInput::menuRequest);
    EXPECT_EQ(userInput(109, flags::shift | flags::rightShift), UserInput::menuRequest);
    EXPECT_EQ(userInput(109, flags::control | flags::leftControl), UserInput::command);
}

} // namespace
} // namespace quillane::core

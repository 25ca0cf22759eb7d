// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/UserInput.hpp"

#include <algorithm>
#include <array>

namespace quillane::core {

namespace {

// Key codes of macOS (Carbon HIToolbox, Events.h).
constexpr KeyCode tab = 48;
constexpr KeyCode f10 = 109;
constexpr KeyCode menu = 110;

/// Return, Escape, Enter, Home, Page Up, End, Page Down and the arrows.
constexpr std::array<KeyCode, 11> navigationKeys{36, 53, 76, 115, 116, 119, 121, 123, 124, 125, 126};

/// Letters, digits, punctuation, space and Delete; the key pad; the extra keys of Japanese keyboards; forward Delete.
constexpr bool isTypingKey(KeyCode key) {
    return (key <= 51 && key != tab) || (key >= 65 && key <= 69) || key == 75 || key == 78 ||
           (key >= 81 && key <= 95 && key != 90) || key == 117;
}

/// The right Option key is AltGr on many keyboards, and on macOS either one types characters.
constexpr EventFlags shortcutModifiers = flags::control | flags::command | flags::leftOption;

} // namespace

UserInput userInput(KeyCode key, EventFlags flags) {
    if (key == menu || (key == f10 && (flags & flags::shift) != 0)) {
        return UserInput::menuRequest;
    }
    if (std::ranges::find(navigationKeys, key) != navigationKeys.end()) {
        return UserInput::navigation;
    }
    return isTypingKey(key) && (flags & shortcutModifiers) == 0 ? UserInput::typing : UserInput::command;
}

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/KeyHold.hpp"

#include "core/keyboard/UserInput.hpp"

namespace quillane::core::keyHold {

namespace {

// Key codes of macOS (Carbon HIToolbox, Events.h).
constexpr KeyCode tab = 48;
constexpr KeyCode escape = 53;

/// Without the right Option key, which types characters.
constexpr EventFlags shortcutModifiers = flags::control | flags::command | flags::leftOption;

} // namespace

bool holds(KeyCode key, EventFlags flags) {
    if (key == escape || (flags & shortcutModifiers) != 0) {
        return false;
    }
    const auto input = userInput(key, flags);
    return key == tab || input == UserInput::typing || input == UserInput::navigation;
}

} // namespace quillane::core::keyHold

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypedStrokes.hpp"

namespace quillane::core {

namespace {

constexpr std::chrono::seconds rest{30};

// Key codes of macOS (Carbon HIToolbox, Events.h).
constexpr KeyCode backspace = 51;
constexpr KeyCode forwardDelete = 117;

} // namespace

void TypedStrokes::notePress(KeyCode key, EventFlags flags, Time now) {
    const bool erasesMore = key == backspace && (flags & flags::option) != 0; // a whole word
    if (userInput(key, flags) != UserInput::typing || erasesMore) {
        reset();
        return;
    }
    const auto before = count(now);
    last_ = now;
    if (key == forwardDelete) {
        count_ = before;
    } else if (key == backspace) {
        count_ = before > 0 ? before - 1 : 0;
    } else {
        count_ = before + 1;
    }
}

std::size_t TypedStrokes::count(Time now) const {
    return now - last_ < rest ? count_ : 0;
}

} // namespace quillane::core

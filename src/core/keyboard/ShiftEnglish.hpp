// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <optional>
#include <span>

/// Temporary English: with a right-to-left input source, Shift with a letter key types the English letter of that key.
namespace quillane::core::shiftEnglish {

/// The modifiers that allow it: Shift, and none that makes the key a shortcut (Control, Option, Command, Fn).
struct Conditions {
    bool shift = false;
    bool shortcutModifier = false;
    bool rtlSource = false; ///< the input source writes from right to left
    bool editable = false;  ///< text can be typed where the focus is
};

/// The lower-case letter that the key types, or none when a condition fails or the key is not a letter of an ANSI
/// keyboard.
[[nodiscard]] std::optional<char16_t> character(KeyCode keyCode, const Conditions& conditions);

/// The 26 letter keys, in ascending order.
[[nodiscard]] std::span<const KeyCode> keyCodes();

} // namespace quillane::core::shiftEnglish

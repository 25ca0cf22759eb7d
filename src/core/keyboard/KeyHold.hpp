// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <chrono>

/// Keys are held back while a menu that the program has requested may be open, so that who types on finds the letters
/// in the text. They are handed on, in order, once the attempt has ended and its menu is closed, or after `limit`.
namespace quillane::core::keyHold {

/// Whether a press is held back: each key that types, erases or moves in a text. Escape, shortcuts, function keys and
/// modifiers never are.
[[nodiscard]] bool holds(KeyCode key, EventFlags flags);

/// The longest time from the first press that is held back; while there is none, from the end of the attempt. It is as
/// long as an attempt waits for its menu: an application that opens its menu late would show the letters as late.
inline constexpr std::chrono::milliseconds limit{1500};

} // namespace quillane::core::keyHold

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace quillane {

/// A modifier key in the terms of macOS.
struct ModifierKey {
    core::KeyCode keyCode;  ///< of the left or right key
    core::EventFlags flags; ///< while it is down: the modifier's bit and the bit of its side; none for Caps Lock

    bool operator==(const ModifierKey&) const = default;
};

namespace x11KeyCodes {

/// The macOS virtual key code of the key in the same place. X numbers keys as Linux does (linux/input-event-codes.h)
/// plus 8. Keys that no Mac keyboard has get numbers of their own above 0xff.
[[nodiscard]] core::KeyCode macKeyCode(xcb_keycode_t keycode);

/// The X key code of the key in the same place; none when X has no such key.
[[nodiscard]] std::optional<xcb_keycode_t> keycode(core::KeyCode macKeyCode);

/// The modifier that a key with this key symbol is, or nullptr. Level 3 shift is Option, as on a Mac; which side is
/// told by the place of the key, as it is for symbols that do not name a side.
[[nodiscard]] const ModifierKey* modifier(std::uint32_t keysym, xcb_keycode_t keycode);

} // namespace x11KeyCodes

} // namespace quillane

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
    core::EventFlags flags; ///< the modifier's bit and the bit of its side while it is down; none for Caps Lock

    bool operator==(const ModifierKey&) const = default;
};

namespace x11KeyCodes {

/// The macOS virtual key code of the key in the same position. X numbers keys as Linux does (linux/input-event-codes.h)
/// plus 8. Keys that Mac keyboards lack get separate numbers above 0xff.
[[nodiscard]] core::KeyCode macKeyCode(xcb_keycode_t keycode);

/// The X key code of the key in the same position; none when X has no such key.
[[nodiscard]] std::optional<xcb_keycode_t> keycode(core::KeyCode macKeyCode);

/// The modifier of a key with this key symbol, or nullptr. Level 3 shift is Option, as on a Mac. For symbols that do
/// not name a side, the position of the key decides.
[[nodiscard]] const ModifierKey* modifier(std::uint32_t keysym, xcb_keycode_t keycode);

} // namespace x11KeyCodes

} // namespace quillane

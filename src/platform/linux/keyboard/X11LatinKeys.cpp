// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11LatinKeys.hpp"

#include "platform/linux/keyboard/LatinKeyPlaces.hpp"
#include "platform/linux/keyboard/X11Keymap.hpp"

namespace quillane {

namespace {

/// The symbol without modifiers, if it is a printable ASCII character; its key symbol is its code.
std::optional<char> character(const X11Keymap& keymap, unsigned group, std::uint32_t keycode) {
    const auto symbol = keymap.keysym(static_cast<xcb_keycode_t>(keycode), group, 0);
    return symbol > 0x20 && symbol < 0x7f ? std::optional(static_cast<char>(symbol)) : std::nullopt;
}

/// A spare key (`X11SpareKeys`) types a Latin letter in every group, but belongs to no layout.
bool isSpare(const X11Keymap& keymap, std::uint32_t keycode) {
    return keymap.onlyKeysym(static_cast<xcb_keycode_t>(keycode)) != 0;
}

bool hasLatinLetters(const X11Keymap& keymap, unsigned group) {
    for (std::uint32_t keycode = keymap.firstKeycode(); keycode <= keymap.lastKeycode(); ++keycode) {
        const auto found = character(keymap, group, keycode);
        if (found && *found >= 'a' && *found <= 'z' && !isSpare(keymap, keycode)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<char> latinKey(const X11Keymap& keymap, unsigned group, std::uint32_t keycode) {
    if (keycode < keymap.firstKeycode() || keycode > keymap.lastKeycode() || hasLatinLetters(keymap, group)) {
        return std::nullopt;
    }
    for (unsigned other = 0; other < keymap.groupCount(); ++other) {
        if (hasLatinLetters(keymap, other)) {
            return character(keymap, other, keycode);
        }
    }
    return latinKeyInPlace(keycode);
}

} // namespace quillane

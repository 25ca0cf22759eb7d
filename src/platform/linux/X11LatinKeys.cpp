// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/X11LatinKeys.hpp"

#include "platform/linux/X11Keymap.hpp"

#include <array>
#include <string_view>

namespace quillane {

namespace {

/// The rows of letters of a keyboard of the United States, by the key codes that Linux gives them.
struct Row {
    std::uint32_t first;
    std::string_view characters;
};

constexpr std::array rows{Row{24, "qwertyuiop[]"}, Row{38, "asdfghjkl;'"}, Row{52, "zxcvbnm,./"}};

/// The symbol without modifiers, as far as it is a printable character of ASCII, whose key symbols are their codes.
std::optional<char> character(const X11Keymap& keymap, unsigned group, std::uint32_t keycode) {
    const auto symbol = keymap.keysym(static_cast<xcb_keycode_t>(keycode), group, 0);
    return symbol > 0x20 && symbol < 0x7f ? std::optional(static_cast<char>(symbol)) : std::nullopt;
}

bool hasLatinLetters(const X11Keymap& keymap, unsigned group) {
    for (std::uint32_t keycode = keymap.firstKeycode(); keycode <= keymap.lastKeycode(); ++keycode) {
        if (const auto found = character(keymap, group, keycode); found && *found >= 'a' && *found <= 'z') {
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
    for (const auto& [first, characters] : rows) {
        if (keycode >= first && keycode - first < characters.size()) {
            return characters[keycode - first];
        }
    }
    return std::nullopt;
}

} // namespace quillane

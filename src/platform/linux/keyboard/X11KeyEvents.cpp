// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/X11KeyEvents.hpp"

#include "core/keyboard/ShiftEnglish.hpp"
#include "platform/linux/keyboard/X11KeyCodes.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include <xcb/xtest.h>

namespace quillane {

namespace {

namespace flags = core::flags;

constexpr std::array allModifiers{flags::control, flags::option, flags::shift, flags::command};

constexpr bool isLatinLetter(std::uint32_t keysym) { // key symbols of ASCII equal its codes
    return keysym >= 'a' && keysym <= 'z';
}

} // namespace

bool X11KeyEvents::isKeyDown(core::KeyCode keyCode) const {
    const auto place = x11KeyCodes::keycode(keyCode);
    return place && keyboard_.keysDown().test(*place);
}

bool X11KeyEvents::postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags wanted) {
    constexpr auto any = flags::control | flags::option | flags::shift | flags::command;
    if (connection_.isLost() || !connection_.extensions().hasXTest || (keyboard_.flags() & any) != 0) {
        return false;
    }
    const auto press = pressIn(pid, {keyCode, wanted});
    const auto key = press ? keycodeFor(press->keyCode) : std::nullopt;
    if (!key) {
        return false;
    }
    std::vector<xcb_keycode_t> held;
    for (const auto flag : allModifiers) {
        if ((press->flags & flag) == 0) {
            continue;
        }
        const auto modifier = modifierKey(flag);
        if (!modifier) {
            return false;
        }
        held.push_back(*modifier);
    }
    for (const auto modifier : held) {
        fake(XCB_KEY_PRESS, modifier);
    }
    fake(XCB_KEY_PRESS, *key);
    fake(XCB_KEY_RELEASE, *key);
    std::ranges::reverse(held); // released in reverse order
    for (const auto modifier : held) {
        fake(XCB_KEY_RELEASE, modifier);
    }
    connection_.flush();
    return true;
}

std::optional<KeyPress> X11KeyEvents::pressIn(pid_t pid, const KeyPress& onMac) const {
    const bool isShortcut = (onMac.flags & flags::command) != 0;
    const auto style = isShortcut && styleIn_ ? styleIn_(pid) : ShortcutStyle::control;
    if (style == ShortcutStyle::shiftInsert && !(offersSelection_ && offersSelection_())) {
        return std::nullopt;
    }
    return terminalShortcuts::pressed(style, onMac);
}

/// The key in that position, unless the current layout has another Latin letter there: then the key with the letter,
/// because applications go by the letter.
std::optional<xcb_keycode_t> X11KeyEvents::keycodeFor(core::KeyCode keyCode) const {
    const auto inPlace = x11KeyCodes::keycode(keyCode);
    const auto letter = core::shiftEnglish::character(keyCode, {.shift = true, .rtlSource = true, .editable = true});
    const auto& keymap = keyboard_.keymap();
    const auto keysym = [&](xcb_keycode_t code) { return keymap.keysym(code, keyboard_.group(), 0); };
    if (!inPlace || !letter || !isLatinLetter(keysym(*inPlace)) || keysym(*inPlace) == *letter) {
        return inPlace;
    }
    for (unsigned code = keymap.firstKeycode(); code <= keymap.lastKeycode(); ++code) {
        if (keysym(static_cast<xcb_keycode_t>(code)) == *letter) {
            return static_cast<xcb_keycode_t>(code);
        }
    }
    return inPlace;
}

std::optional<xcb_keycode_t> X11KeyEvents::modifierKey(core::EventFlags flag) const {
    const auto& keymap = keyboard_.keymap();
    for (unsigned code = keymap.firstKeycode(); code <= keymap.lastKeycode(); ++code) {
        const auto* modifier = keymap.modifier(static_cast<xcb_keycode_t>(code));
        if (modifier != nullptr && (modifier->flags & flag) != 0) {
            return static_cast<xcb_keycode_t>(code);
        }
    }
    return std::nullopt;
}

void X11KeyEvents::fake(std::uint8_t event, xcb_keycode_t keycode) {
    xcb_test_fake_input(connection_.raw(), event, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

} // namespace quillane

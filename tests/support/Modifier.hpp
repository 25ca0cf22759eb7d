// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <array>
#include <string_view>

namespace quillane::fakes {

/// The modifier keys of a keyboard.
enum class Modifier {
    leftShift,
    rightShift,
    leftControl,
    rightControl,
    leftOption,
    rightOption,
    leftCommand,
    rightCommand,
    function,
};

/// What a modifier key is called in scenarios, its key code (Carbon HIToolbox, Events.h) and the flags it sets.
struct ModifierKey {
    Modifier modifier{};
    std::string_view name;
    core::KeyCode keyCode = 0;
    core::EventFlags common = 0; ///< the bit that left and right share
    core::EventFlags own = 0;    ///< the bit of this key alone
};

inline constexpr std::array modifierKeys{
    ModifierKey{Modifier::leftShift, "left-shift", 56, core::flags::shift, core::flags::leftShift},
    ModifierKey{Modifier::rightShift, "right-shift", 60, core::flags::shift, core::flags::rightShift},
    ModifierKey{Modifier::leftControl, "left-control", 59, core::flags::control, core::flags::leftControl},
    ModifierKey{Modifier::rightControl, "right-control", 62, core::flags::control, core::flags::rightControl},
    ModifierKey{Modifier::leftOption, "left-option", 58, core::flags::option, core::flags::leftOption},
    ModifierKey{Modifier::rightOption, "right-option", 61, core::flags::option, core::flags::rightOption},
    ModifierKey{Modifier::leftCommand, "left-command", 55, core::flags::command, core::flags::leftCommand},
    ModifierKey{Modifier::rightCommand, "right-command", 54, core::flags::command, core::flags::rightCommand},
    ModifierKey{Modifier::function, "fn", 63, core::flags::secondaryFn, 0},
};

[[nodiscard]] constexpr const ModifierKey& keyOf(Modifier modifier) {
    return modifierKeys.at(static_cast<std::size_t>(modifier));
}

} // namespace quillane::fakes

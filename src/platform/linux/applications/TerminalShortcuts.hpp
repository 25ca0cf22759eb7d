// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// How an application takes the shortcuts that have Command on a Mac.
enum class ShortcutStyle {
    control,      ///< with Control instead, as nearly all do
    controlShift, ///< with Control and Shift, as terminals: Control and a letter belong to the program that runs in
                  ///< them
    shiftInsert,  ///< it has none but Shift and Insert, which pastes the selected text (PRIMARY), as older terminals
};

struct KeyPress {
    core::KeyCode keyCode = 0;
    core::EventFlags flags = 0;

    bool operator==(const KeyPress&) const = default;
};

/// What has the keyboard, as far as is known.
struct ShortcutFocus {
    std::string_view role;        ///< in the names of macOS; empty when the application does not tell
    std::string_view subrole;     ///< "AXTerminal" where a program runs in it
    std::string_view application; ///< its identifier
    bool inTerminal = false;      ///< the application calls itself a terminal
};

namespace terminalShortcuts {

/// What has the focus decides, if it is told: other applications hold terminals, and terminals have fields to search
/// in.
[[nodiscard]] ShortcutStyle styleOf(const ShortcutFocus& focus);

/// The keys that do in such an application what the keys with Command do on a Mac; none when it has no such keys.
[[nodiscard]] std::optional<KeyPress> pressed(ShortcutStyle style, const KeyPress& onMac);

} // namespace terminalShortcuts

} // namespace quillane

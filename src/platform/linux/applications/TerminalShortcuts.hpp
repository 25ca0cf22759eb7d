// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// How an application expects the shortcuts that use Command on a Mac.
enum class ShortcutStyle {
    control,      ///< with Control instead, as nearly all
    controlShift, ///< with Control and Shift, like terminals, where Control and a letter belong to the program inside
    shiftInsert,  ///< none but Shift and Insert, which pastes the selected text (PRIMARY), like older terminals
};

struct KeyPress {
    core::KeyCode keyCode = 0;
    core::EventFlags flags = 0;

    bool operator==(const KeyPress&) const = default;
};

/// What is known of the keyboard focus.
struct ShortcutFocus {
    std::string_view role;        ///< by its macOS name; empty when the application does not report it
    std::string_view subrole;     ///< "AXTerminal" where a program runs in it
    std::string_view application; ///< its identifier
    bool inTerminal = false;      ///< the application declares itself a terminal
};

namespace terminalShortcuts {

/// The focused element decides, if it is known: other applications contain terminals, and terminals have search fields.
[[nodiscard]] ShortcutStyle styleOf(const ShortcutFocus& focus);

/// The keys that correspond in such an application to the keys with Command on a Mac; none when there are none.
[[nodiscard]] std::optional<KeyPress> pressed(ShortcutStyle style, const KeyPress& onMac);

} // namespace terminalShortcuts

} // namespace quillane

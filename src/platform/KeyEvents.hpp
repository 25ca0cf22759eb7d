// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <sys/types.h>

namespace quillane {

/// The keyboard apart from the event stream. Main thread.
class KeyEvents {
public:
    virtual ~KeyEvents() = default;

    /// The modifiers that are down now, in the combined session state. While an event passes through the tap it has not
    /// reached the session yet: these are the modifiers before it. Never blocks.
    [[nodiscard]] virtual core::EventFlags currentFlags() const = 0;

    /// Whether a key, modifiers included, is down in the system's own state, which includes releases that no event tap
    /// sees: on macOS those during secure input. Never blocks.
    [[nodiscard]] virtual bool isKeyDown(core::KeyCode keyCode) const = 0;

    /// Whether keys go to a program in a terminal rather than to an editor, as far as this desktop can tell by what has
    /// the focus in the application in front. May wait for that application, at most 50 ms.
    [[nodiscard]] virtual bool goesToTerminal([[maybe_unused]] pid_t pid) const { return false; }

    /// Presses and releases a key with exactly these modifiers (of command, option, control and shift) for an
    /// application. Translates Command to the modifier that this desktop, or this application (terminals), uses for
    /// shortcuts. False when it is not possible now: where keys go to whatever has the keyboard, the application must
    /// be in front, and modifiers that the user holds would be added to the key.
    [[nodiscard]] virtual bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) = 0;
};

} // namespace quillane

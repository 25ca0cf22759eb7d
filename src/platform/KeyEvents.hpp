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

    /// Whether a key, modifiers included, is down by the system's own state, which also knows of releases that no event
    /// tap is shown: on macOS those while secure input is on. Never blocks.
    [[nodiscard]] virtual bool isKeyDown(core::KeyCode keyCode) const = 0;

    /// Presses and releases a key with exactly these modifiers (of command, option, control and shift) for an
    /// application. Where a shortcut of applications has another modifier than Command, or this application has another
    /// one for the same, that is pressed instead. False when it cannot be done now: where keys go to whatever has the
    /// keyboard, the application has to be in front, and modifiers that the user holds would be added to the key.
    [[nodiscard]] virtual bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) = 0;
};

} // namespace quillane

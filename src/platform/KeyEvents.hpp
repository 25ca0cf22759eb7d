// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

namespace quillane {

/// The state of the keyboard apart from the event stream. Main thread.
class KeyEvents {
public:
    virtual ~KeyEvents() = default;

    /// The modifiers that are down now, in the combined session state. While an event passes through the tap it has not
    /// reached the session yet: these are the modifiers before it. Never blocks.
    [[nodiscard]] virtual core::EventFlags currentFlags() const = 0;
};

} // namespace quillane

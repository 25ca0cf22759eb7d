// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/DirectionChord.hpp"
#include "core/keyboard/EventFlags.hpp"

namespace quillane::core {

/// The chord that retypes text of the wrong layout: left Option with right Shift, and no other modifier.
class RetypingChord {
public:
    /// Takes the modifiers that are down now. Returns true when the chord fires.
    bool update(EventFlags rawFlags);

    /// Cancels the chord if any of its keys is down.
    void cancel();

    void reset();

private:
    DirectionChord chord_;
};

} // namespace quillane::core

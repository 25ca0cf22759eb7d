// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/DirectionChord.hpp"
#include "core/keyboard/EventFlags.hpp"

namespace quillane::core {

/// The chords that set a paragraph's direction: Control with either Shift, and right Option with right Shift.
class WritingDirectionChord {
public:
    /// Takes the modifiers that are down now. Returns the direction when a chord fires.
    std::optional<WritingDirection> update(EventFlags rawFlags);

    /// Cancels each chord that has a key down.
    void cancel();

    void reset();

private:
    DirectionChord control_;
    DirectionChord rightOption_;
};

} // namespace quillane::core

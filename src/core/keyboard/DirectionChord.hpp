// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/keyboard/ModifierState.hpp"

#include <optional>

namespace quillane::core {

/// A chord of Control with one Shift that fires when the last of its keys is released: right Shift gives right-to-left,
/// left Shift left-to-right. Any other modifier, both Shifts, or a change of Shift while Control stays down cancels it
/// until everything is released.
class DirectionChord {
public:
    /// Takes the keys that are down now. Returns the direction when the chord fires.
    std::optional<WritingDirection> update(const ModifierState& state);

    /// Cancels the chord if any of its keys is down; otherwise does nothing.
    void cancel();

    /// Back to the initial state, whatever is down.
    void reset();

    bool operator==(const DirectionChord&) const = default;

private:
    void follow(const ModifierState& state);

    std::optional<WritingDirection> candidate_;
    bool cancelled_ = false;
    ModifierState previous_;
};

} // namespace quillane::core

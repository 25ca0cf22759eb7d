// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/DirectionChord.hpp"

namespace quillane::core {

std::optional<WritingDirection> DirectionChord::update(const ModifierState& state) {
    if (state.isReleased()) {
        const auto fired = cancelled_ ? std::nullopt : candidate_;
        reset();
        return fired;
    }
    if (state.other || (state.leftShift && state.rightShift)) {
        cancelled_ = true;
        candidate_.reset();
    } else if (!cancelled_) {
        follow(state);
    }
    previous_ = state;
    return std::nullopt;
}

/// Neither another modifier nor both Shifts are down, and the chord has not been cancelled.
void DirectionChord::follow(const ModifierState& state) {
    if (state.control && state.leftShift != state.rightShift) {
        const auto direction = state.rightShift ? WritingDirection::rightToLeft : WritingDirection::leftToRight;
        if (candidate_ && candidate_ != direction) {
            cancel();
        } else {
            candidate_ = direction;
        }
        return;
    }
    if (!candidate_) {
        return;
    }
    const bool nothingNew = state.control     ? previous_.control
                            : state.leftShift ? previous_.leftShift
                                              : previous_.rightShift;
    if (!nothingNew) {
        cancel();
    }
}

void DirectionChord::cancel() {
    if (!previous_.isReleased()) {
        candidate_.reset();
        cancelled_ = true;
    }
}

void DirectionChord::reset() {
    *this = DirectionChord();
}

} // namespace quillane::core

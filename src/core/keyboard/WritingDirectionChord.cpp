// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/WritingDirectionChord.hpp"

namespace quillane::core {

namespace {

constexpr bool any(EventFlags rawFlags, EventFlags mask) {
    return (rawFlags & mask) != 0;
}

ModifierState controlState(EventFlags rawFlags) {
    const bool stranger = any(rawFlags, flags::option | flags::command | flags::secondaryFn);
    const bool unknownShift = any(rawFlags, flags::shift) && !any(rawFlags, flags::leftShift | flags::rightShift);
    return {.control = any(rawFlags, flags::control),
            .leftShift = any(rawFlags, flags::leftShift),
            .rightShift = any(rawFlags, flags::rightShift),
            .other = stranger || unknownShift};
}

ModifierState rightOptionState(EventFlags rawFlags) {
    const bool stranger =
        any(rawFlags, flags::secondaryFn | flags::command | flags::control | flags::leftOption | flags::leftShift);
    const bool otherOption = any(rawFlags, flags::option) && !any(rawFlags, flags::rightOption);
    const bool otherShift = any(rawFlags, flags::shift) && !any(rawFlags, flags::rightShift);
    return {.control = any(rawFlags, flags::rightOption),
            .leftShift = false,
            .rightShift = any(rawFlags, flags::rightShift),
            .other = stranger || otherOption || otherShift};
}

} // namespace

std::optional<WritingDirection> WritingDirectionChord::update(EventFlags rawFlags) {
    const auto byControl = control_.update(controlState(rawFlags));
    const auto byOption = rightOption_.update(rightOptionState(rawFlags));
    return byControl ? byControl : byOption;
}

void WritingDirectionChord::cancel() {
    control_.cancel();
    rightOption_.cancel();
}

void WritingDirectionChord::reset() {
    control_.reset();
    rightOption_.reset();
}

} // namespace quillane::core

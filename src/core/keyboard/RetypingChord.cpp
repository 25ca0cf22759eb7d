// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/RetypingChord.hpp"

namespace quillane::core {

namespace {

constexpr EventFlags strangers =
    flags::secondaryFn | flags::command | flags::control | flags::rightOption | flags::leftShift;

constexpr bool any(EventFlags rawFlags, EventFlags mask) {
    return (rawFlags & mask) != 0;
}

ModifierState chordState(EventFlags rawFlags) {
    const bool unknownOption = any(rawFlags, flags::option) && !any(rawFlags, flags::leftOption);
    const bool unknownShift = any(rawFlags, flags::shift) && !any(rawFlags, flags::rightShift);
    return {.control = any(rawFlags, flags::leftOption),
            .leftShift = false,
            .rightShift = any(rawFlags, flags::rightShift),
            .other = any(rawFlags, strangers) || unknownOption || unknownShift};
}

} // namespace

bool RetypingChord::update(EventFlags rawFlags) {
    return chord_.update(chordState(rawFlags)).has_value();
}

void RetypingChord::cancel() {
    chord_.cancel();
}

void RetypingChord::reset() {
    chord_.reset();
}

} // namespace quillane::core

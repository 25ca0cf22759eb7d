// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/LanguageSwitchChord.hpp"

namespace quillane::core {

namespace {

constexpr EventFlags neverTogether =
    flags::secondaryFn | flags::command | flags::control | flags::rightOption | flags::rightShift;
static_assert((neverTogether | flags::leftOption) == 0x940064 && neverTogether == 0x940044);

ModifierState chordState(EventFlags rawFlags) {
    const bool option = (rawFlags & flags::option) != 0;
    const bool leftOption = (rawFlags & flags::leftOption) != 0;
    const bool leftShift = (rawFlags & flags::leftShift) != 0;
    const bool strangerWithOption = option && (rawFlags & (neverTogether | flags::leftOption)) != flags::leftOption;
    const bool strangerWithoutOption = !option && (rawFlags & neverTogether) != 0;
    const bool otherShift = (rawFlags & flags::shift) != 0 && !leftShift;
    return {.control = leftOption,
            .leftShift = leftShift,
            .rightShift = false,
            .other = strangerWithOption || strangerWithoutOption || otherShift};
}

} // namespace

bool LanguageSwitchChord::update(EventFlags rawFlags) {
    return chord_.update(chordState(rawFlags)).has_value();
}

void LanguageSwitchChord::cancel() {
    chord_.cancel();
}

void LanguageSwitchChord::reset() {
    chord_.reset();
}

} // namespace quillane::core

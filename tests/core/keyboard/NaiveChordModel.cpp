// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/NaiveChordModel.hpp"

namespace quillane::core::naive {

namespace {

bool nothingHeld(const Keys& keys) {
    return !keys.control && !keys.leftShift && !keys.rightShift && !keys.foreign;
}

/// The direction of a whole chord: control with exactly one Shift.
std::optional<std::string_view> wholeChord(const Keys& keys) {
    if (keys.control && keys.rightShift && !keys.leftShift) {
        return "RTL";
    }
    if (keys.control && keys.leftShift && !keys.rightShift) {
        return "LTR";
    }
    return std::nullopt;
}

bool pressedSomething(const Keys& before, const Keys& after) {
    return (after.control && !before.control) || (after.leftShift && !before.leftShift) ||
           (after.rightShift && !before.rightShift);
}

} // namespace

std::optional<std::string_view> Story::change(const Keys& keys) {
    if (!nothingHeld(keys)) {
        states_.push_back(keys);
        return std::nullopt;
    }
    const auto result = verdict();
    reset();
    return result;
}

void Story::cancel() {
    if (!states_.empty()) {
        spoiled_ = true;
    }
}

void Story::reset() {
    states_.clear();
    spoiled_ = false;
}

std::optional<std::string_view> Story::verdict() const {
    if (spoiled_) {
        return std::nullopt;
    }
    for (const auto& keys : states_) {
        if (keys.foreign || (keys.leftShift && keys.rightShift)) {
            return std::nullopt;
        }
    }
    std::optional<std::string_view> chord;
    for (std::size_t place = 0; place < states_.size(); ++place) {
        const auto here = wholeChord(states_[place]);
        if (here && chord && *here != *chord) {
            return std::nullopt; // another chord without a release between
        }
        if (!here && chord && pressedSomething(states_[place - 1], states_[place])) {
            return std::nullopt; // a key on the way out
        }
        if (here) {
            chord = here;
        }
    }
    return chord;
}

Keys controlChordKeys(std::uint64_t raw) {
    Keys keys;
    keys.control = (raw & 0x40000) != 0;
    keys.leftShift = (raw & 0x2) != 0;
    keys.rightShift = (raw & 0x4) != 0;
    if ((raw & 0x980000) != 0) {
        keys.foreign = true;
    }
    if ((raw & 0x20000) != 0 && (raw & 0x2) == 0) {
        keys.foreign = !((raw & 0x4) != 0 && (raw & 0x980000) == 0);
    }
    return keys;
}

Keys rightOptionChordKeys(std::uint64_t raw) {
    Keys keys;
    keys.control = (raw & 0x40) != 0;
    keys.rightShift = (raw & 0x4) != 0;
    if ((raw & 0x940022) != 0) {
        keys.foreign = true;
    }
    if ((raw & 0x80000) != 0 && (raw & 0x40) == 0) {
        keys.foreign = true;
    }
    if ((raw & 0x20000) != 0 && (raw & 0x4) == 0) {
        keys.foreign = true;
    }
    return keys;
}

Keys languageChordKeys(std::uint64_t raw) {
    Keys keys;
    keys.control = (raw & 0x20) != 0;
    keys.leftShift = (raw & 0x2) != 0;
    if ((raw & 0x80000) != 0) {
        keys.foreign = (raw & 0x940064) != 0x20;
    } else {
        keys.foreign = (raw & 0x940044) != 0;
    }
    if (!keys.foreign) {
        keys.foreign = (raw & 0x20000) != 0 && (raw & 0x2) == 0;
    }
    return keys;
}

Keys retypingChordKeys(std::uint64_t raw) {
    Keys keys;
    keys.control = (raw & 0x20) != 0;
    keys.rightShift = (raw & 0x4) != 0;
    if ((raw & 0x940042) != 0) {
        keys.foreign = true;
    }
    if ((raw & 0x80000) != 0 && (raw & 0x20) == 0) {
        keys.foreign = true;
    }
    if ((raw & 0x20000) != 0 && (raw & 0x4) == 0) {
        keys.foreign = true;
    }
    return keys;
}

} // namespace quillane::core::naive

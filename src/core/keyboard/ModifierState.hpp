// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// Which keys of a chord are down. "Control" is a role: another key may play it.
struct ModifierState {
    bool control = false;
    bool leftShift = false;
    bool rightShift = false;
    bool other = false; ///< a modifier that is not part of the chord

    [[nodiscard]] constexpr bool isReleased() const { return !control && !leftShift && !rightShift && !other; }

    bool operator==(const ModifierState&) const = default;
};

} // namespace quillane::core

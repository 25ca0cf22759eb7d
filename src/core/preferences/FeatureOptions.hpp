// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

class UserDefaults;

/// The six switches that decide which features run. The initial values are those of a new installation.
struct FeatureOptions {
    bool shiftEnglish = true;         ///< Shift types English letters in a right-to-left input source
    bool languageSwitch = true;       ///< left Option with left Shift switches the input source
    bool writingDirection = true;     ///< chords that set the direction of a paragraph
    bool keepAwake = false;           ///< no sleep when idle
    bool excludeScreenSharing = true; ///< leave the keyboard alone in a viewer of another computer's screen
    bool paused = false;              ///< all of the above are suspended and keep their values

    /// The stored switches. One that is missing or not a Boolean has its initial value.
    [[nodiscard]] static FeatureOptions load(const UserDefaults& defaults);

    /// Stores all six switches in one write.
    void save(UserDefaults& defaults) const;

    /// Whether the keyboard is to be monitored.
    [[nodiscard]] constexpr bool shouldMonitor() const {
        return !paused && (shiftEnglish || languageSwitch || writingDirection);
    }

    [[nodiscard]] constexpr bool shouldKeepAwake() const { return keepAwake && !paused; }

    bool operator==(const FeatureOptions&) const = default;
};

} // namespace quillane::core

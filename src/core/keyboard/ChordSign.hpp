// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/ChordOutcome.hpp"
#include "core/localization/AppLanguage.hpp"
#include "core/support/Geometry.hpp"

#include <chrono>
#include <optional>
#include <string_view>
#include <vector>

namespace quillane::core {

/// The defaults key of the switch that shows signs: a Boolean, true when absent.
inline constexpr std::string_view chordSignKey = "ChordSignEnabled";

/// What is shown beside the text cursor for a moment after a chord, so that the user sees there what it did.
struct ChordSign {
    std::vector<std::string_view> symbols; ///< names of system symbols, left to right in every language
    std::optional<LocalizedText> text;     ///< none where the symbols say it all
    LocalizedText announcement;            ///< for screen readers

    bool operator==(const ChordSign&) const = default;
};

/// A new direction is an arrow with a paragraph sign, a new input source its name, and a failure its message.
[[nodiscard]] ChordSign chordSign(const ChordOutcome& outcome);

/// How long a sign is shown: 0.6 s, longer the more there is to read, at most eight seconds.
[[nodiscard]] std::chrono::milliseconds timeShown(const ChordSign& sign, AppLanguage language);

namespace chordSignPlacement {

/// Between the sign and what it is shown for, and the sign and the edge of the screen.
inline constexpr double margin = 6;

/// The frame of the sign: centred below the text cursor or the pointer, or above if it does not fit below. It never
/// leaves the screen.
[[nodiscard]] ScreenRect frame(const ScreenRect& place, const ScreenRect& screen, Size size);

} // namespace chordSignPlacement

} // namespace quillane::core

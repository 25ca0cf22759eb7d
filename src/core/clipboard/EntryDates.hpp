// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"

#include <span>
#include <vector>

namespace quillane::core::entryDates {

/// The minimum step between two consecutive entries, in seconds.
inline constexpr double step = 0.001;

/// The date of the next entry: the present, or one step after the newest entry if the clock is behind it because it was
/// set back or stands still.
[[nodiscard]] Date next(std::span<const ClipboardEntry> entries, Date now);

/// Brings future dates down to the present. They keep their order, among each other and with earlier ones. Returns the
/// entries that have changed.
std::vector<Uuid> bringDown(std::span<ClipboardEntry> entries, Date now);

} // namespace quillane::core::entryDates

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"

#include <span>
#include <vector>

namespace quillane::core::entryDates {

/// The smallest step between two entries that follow each other, in seconds.
inline constexpr double step = 0.001;

/// The present for what comes next: one step after the newest entry where the clock says something earlier, since it
/// was set back or stands still.
[[nodiscard]] Date next(std::span<const ClipboardEntry> entries, Date now);

/// Brings dates that lie in the future down to the present. Their order stays, among each other and with those before.
/// The entries that have changed.
std::vector<Uuid> bringDown(std::span<ClipboardEntry> entries, Date now);

} // namespace quillane::core::entryDates

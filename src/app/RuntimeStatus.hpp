// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/preferences/FeatureOptions.hpp"

#include <cstddef>
#include <string_view>

namespace quillane {

/// The facts that decide what the status row and the status item show.
struct RuntimeFacts {
    core::Desktop desktop{}; ///< the desktop that texts name
    core::FeatureOptions options;
    bool fixesWrongLayout = false; ///< the retyping chord is on, which needs the monitor too
    bool oldCopyRunning = false;
    bool keyboardAvailable = true; ///< false where the desktop cannot observe keys at all
    bool canStartMonitor = false;  ///< the permission policy allows the keyboard monitor
    std::size_t grantedPermissions = 0;
    bool screenSharingSuspended = false;
    bool monitorRunning = false;
    bool keepAwakeActive = false;
};

/// The menu's second row. Its symbol is "pause.circle", "cup.and.saucer" or "clock".
struct StatusRow {
    core::LocalizedText text;
    std::string_view symbol;

    bool operator==(const StatusRow&) const = default;
};

/// The first that applies: an old copy runs, paused, no keyboard on this desktop, all keyboard features off,
/// permissions missing, suspended for screen sharing, active; else the monitor did not start.
[[nodiscard]] StatusRow statusRow(const RuntimeFacts& facts);

/// The variants of the status item's image.
enum class StatusMark { plain, paused, keepAwake };

[[nodiscard]] StatusMark statusMark(const RuntimeFacts& facts);

/// The name of the status item for screen readers and its tool tip.
[[nodiscard]] core::LocalizedText statusMarkLabel(StatusMark mark);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/permissions/MacPermission.hpp"

#include <filesystem>
#include <optional>
#include <set>

namespace quillane::core {

/// Which permission to request next without being asked, and what may start.
struct PermissionSetupPolicy {
    std::set<MacPermission> requested; ///< requested before, by the program itself or by the user

    void recordRequest(MacPermission permission) { requested.insert(permission); }

    /// The next permission to request automatically: none for a copy outside an Applications folder (the permission
    /// would belong to the wrong copy), none once Accessibility is granted, and never one that was requested before.
    [[nodiscard]] std::optional<MacPermission> nextAutomaticRequest(const std::set<MacPermission>& granted,
                                                                    bool installed) const;

    /// Accessibility is enough to monitor the keyboard.
    [[nodiscard]] static bool canStartKeyboardMonitor(const std::set<MacPermission>& granted);

    /// Whether the bundle lies, symbolic links resolved, below /Applications or the home folder's Applications.
    /// False for a path that is not absolute or cannot be resolved.
    [[nodiscard]] static bool isInstalled(const std::filesystem::path& app, const std::filesystem::path& home);
};

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PermissionService.hpp"

namespace quillane {

/// The permissions on the page "Privacy & Security" of System Settings.
class MacPermissionService final : public PermissionService {
public:
    /// CGPreflightListenEventAccess for Input Monitoring, AXIsProcessTrusted for Accessibility.
    [[nodiscard]] bool isGranted(core::MacPermission permission) const override;

    /// IOHIDRequestAccess for listening to events, AXIsProcessTrustedWithOptions with the prompt. Either shows the
    /// system's prompt at most once and returns without waiting for the user.
    void request(core::MacPermission permission) override;

    [[nodiscard]] bool hasSettings(core::MacPermission) const override { return true; }

    bool openSettings(core::MacPermission permission) override;

    [[nodiscard]] bool isGrantedInSettings() const override { return true; }
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/permissions/MacPermission.hpp"

namespace quillane {

/// The permissions that the system has granted to this program. Main thread.
class PermissionService {
public:
    virtual ~PermissionService() = default;

    /// Whether the permission is granted now. Reads a state that the system keeps; never asks the user, never blocks.
    [[nodiscard]] virtual bool isGranted(core::MacPermission permission) const = 0;

    /// Requests the permission. On macOS the system may show its prompt; `isGranted` reports the answer later.
    virtual void request(core::MacPermission permission) = 0;

    /// Whether the desktop's settings have a page for the permission. Does not change while this lives.
    [[nodiscard]] virtual bool hasSettings(core::MacPermission permission) const = 0;

    /// Shows that page. False when there is none.
    virtual bool openSettings(core::MacPermission permission) = 0;

    /// Whether the user grants it there, in a list that this program appears in; otherwise a request is enough.
    [[nodiscard]] virtual bool isGrantedInSettings() const = 0;
};

} // namespace quillane

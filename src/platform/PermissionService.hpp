// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/permissions/MacPermission.hpp"

namespace quillane {

/// The grants that the system has given to this program. Main thread.
class PermissionService {
public:
    virtual ~PermissionService() = default;

    /// Whether the permission is granted now. Reads a state that the system keeps; never asks the user, never blocks.
    [[nodiscard]] virtual bool isGranted(core::MacPermission permission) const = 0;

    /// Asks for the permission. On macOS the system may show its prompt; the answer is seen later through `isGranted`.
    virtual void request(core::MacPermission permission) = 0;

    /// Whether the desktop's settings have a page that the permission is found on. Does not change while this lives.
    [[nodiscard]] virtual bool hasSettings(core::MacPermission permission) const = 0;

    /// Shows that page. False when there is none.
    virtual bool openSettings(core::MacPermission permission) = 0;

    /// Whether the user grants it there, in a list that this program appears in; else a request is all it takes.
    [[nodiscard]] virtual bool isGrantedInSettings() const = 0;
};

} // namespace quillane

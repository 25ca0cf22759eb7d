// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/permissions/MacPermission.hpp"
#include "core/support/Listeners.hpp"
#include "platform/PermissionService.hpp"

#include <set>

namespace quillane {

/// The grants as of the last refresh. Main thread.
class PermissionController {
public:
    explicit PermissionController(PermissionService& service);

    /// Reads the grants again; listeners hear of it only when something differs.
    void refresh();

    [[nodiscard]] const std::set<core::MacPermission>& granted() const { return granted_; }

    [[nodiscard]] core::Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

private:
    PermissionService& service_;
    std::set<core::MacPermission> granted_;
    core::Listeners<> changed_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "permissions/PermissionController.hpp"

#include <utility>

namespace quillane {

PermissionController::PermissionController(PermissionService& service) : service_(service) {
    refresh();
}

void PermissionController::refresh() {
    std::set<core::MacPermission> granted;
    for (const auto permission : core::allPermissions) {
        if (service_.isGranted(permission)) {
            granted.insert(permission);
        }
    }
    if (std::exchange(granted_, granted) != granted) {
        changed_.notify();
    }
}

} // namespace quillane

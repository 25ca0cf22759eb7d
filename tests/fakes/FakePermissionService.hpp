// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PermissionService.hpp"

#include <set>
#include <vector>

namespace quillane::fakes {

/// Permissions that a test grants. A request only asks: the user answers later, or never.
class FakePermissionService final : public PermissionService {
public:
    [[nodiscard]] bool isGranted(core::MacPermission permission) const override {
        return granted_.contains(permission);
    }

    void request(core::MacPermission permission) override {
        requests_.push_back(permission);
        if (!grantedInSettings_) {
            granted_.insert(permission);
        }
    }

    bool openSettings(core::MacPermission permission) override {
        opened_.push_back(permission);
        return true;
    }

    [[nodiscard]] bool isGrantedInSettings() const override { return grantedInSettings_; }

    /// The permissions are switched on by a request, as on Linux.
    void grantOnRequest() { grantedInSettings_ = false; }

    void grant(core::MacPermission permission) { granted_.insert(permission); }

    void revoke(core::MacPermission permission) { granted_.erase(permission); }

    /// The permissions that were asked for, in order.
    [[nodiscard]] const std::vector<core::MacPermission>& requests() const { return requests_; }

    /// The permissions whose settings were opened, in order.
    [[nodiscard]] const std::vector<core::MacPermission>& opened() const { return opened_; }

private:
    bool grantedInSettings_ = true;
    std::vector<core::MacPermission> opened_;
    std::set<core::MacPermission> granted_;
    std::vector<core::MacPermission> requests_;
};

} // namespace quillane::fakes

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PermissionService.hpp"
#include "support/Journal.hpp"

#include <set>
#include <vector>

namespace quillane::fakes {

/// Permissions that a test grants. A request only asks: the user answers later, or never.
class FakePermissionService final : public PermissionService {
public:
    [[nodiscard]] bool isGranted(core::MacPermission permission) const override {
        note(journal, "isGranted");
        return granted_.contains(permission);
    }

    void request(core::MacPermission permission) override {
        note(journal, "request");
        requests_.push_back(permission);
        if (!grantedInSettings_ && !ignoresRequests_) {
            granted_.insert(permission);
        }
    }

    [[nodiscard]] bool hasSettings(core::MacPermission permission) const override {
        return !withoutSettings_.contains(permission);
    }

    bool openSettings(core::MacPermission permission) override {
        if (hasSettings(permission)) {
            opened_.push_back(permission);
        }
        return hasSettings(permission);
    }

    [[nodiscard]] bool isGrantedInSettings() const override { return grantedInSettings_; }

    /// The permissions are switched on by a request, as on Linux.
    void grantOnRequest() { grantedInSettings_ = false; }

    /// Requests have no effect, or not yet: only `grant` grants.
    void ignoreRequests() { ignoresRequests_ = true; }

    /// The desktop's settings have no page for the permission.
    void removeSettings(core::MacPermission permission) { withoutSettings_.insert(permission); }

    void grant(core::MacPermission permission) { granted_.insert(permission); }

    void revoke(core::MacPermission permission) { granted_.erase(permission); }

    /// The permissions that were requested, in order.
    [[nodiscard]] const std::vector<core::MacPermission>& requests() const { return requests_; }

    /// The permissions whose settings were opened, in order.
    [[nodiscard]] const std::vector<core::MacPermission>& opened() const { return opened_; }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    bool grantedInSettings_ = true;
    bool ignoresRequests_ = false;
    std::set<core::MacPermission> withoutSettings_;
    std::vector<core::MacPermission> opened_;
    std::set<core::MacPermission> granted_;
    std::vector<core::MacPermission> requests_;
};

} // namespace quillane::fakes

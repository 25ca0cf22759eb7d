// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/permissions/ApplicationLocation.hpp"
#include "core/permissions/PermissionSetupPolicy.hpp"
#include "core/support/Listeners.hpp"

#include <functional>
#include <set>

namespace quillane {

struct Platform;

/// The permissions as of the last refresh, and everything that helps the user to grant them. Main thread.
class PermissionController {
public:
    /// The defaults key of the permissions that were requested, as an array of their raw values.
    static constexpr auto requestKey = "QuillanePermissionRequestsV1";

    /// The defaults key of the flag that is left for the next launch by `restart`.
    static constexpr auto showPermissionsKey = "QuillaneShowPermissionsAfterRestart";

    /// The platform must outlive the controller.
    PermissionController(const Platform& platform, core::ApplicationLocation location);

    /// Reads the permissions again; notifies listeners only of changes.
    void refresh();

    /// Requests a permission and says what to do or, where the request grants it, that it was granted once a refresh
    /// sees it. Does nothing for a copy that is not installed, and during another request.
    void request(core::MacPermission permission);

    /// Makes the next request of the policy, while the application is in front. Where a request grants the permission,
    /// it is only made at the user's click.
    void requestNextIfNeeded();

    /// Opens the page of the system's settings where the permission is granted.
    void openSettings(core::MacPermission permission);

    /// Puts the application's path on the pasteboard.
    void copyPath();

    /// Relaunches the program, so that permissions take effect.
    void restart();

    [[nodiscard]] const std::set<core::MacPermission>& granted() const { return granted_; }

    [[nodiscard]] bool isRequesting() const { return requesting_; }

    [[nodiscard]] bool isInstalled() const { return location_.installed; }

    /// The user grants it in a list of the system's settings that this program appears in.
    [[nodiscard]] bool isGrantedInSettings() const;

    /// The last instruction; empty before the first.
    [[nodiscard]] const core::LocalizedText& feedback() const { return feedback_; }

    [[nodiscard]] const core::ApplicationLocation& location() const { return location_; }

    [[nodiscard]] core::Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

    /// Set by the application delegate; each is optional.
    std::function<void(core::MacPermission)> presentGuide;
    std::function<bool()> applicationIsActive;
    std::function<void()> terminate;

private:
    void saveRequests();
    bool reportGrant();
    void setFeedback(const core::LocalizedText& text);

    const Platform& platform_;
    core::ApplicationLocation location_;
    core::PermissionSetupPolicy policy_;
    std::set<core::MacPermission> granted_;
    bool requesting_ = false;
    bool switchingOn_ = false; ///< Accessibility was requested where a request grants it, and is not granted yet
    core::LocalizedText feedback_;
    core::Listeners<> changed_;
};

} // namespace quillane

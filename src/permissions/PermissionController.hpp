// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/PasteboardContents.hpp"
#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/permissions/ApplicationLocation.hpp"
#include "core/permissions/PermissionSetupPolicy.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/support/Listeners.hpp"
#include "platform/Launcher.hpp"
#include "platform/PermissionService.hpp"
#include "platform/WindowTraits.hpp"

#include <functional>
#include <set>

namespace quillane {

/// What asking for permissions needs of the desktop, borrowed.
struct PermissionDesktop {
    PermissionService& service;
    core::UserDefaults& userDefaults;
    core::PasteboardContents& pasteboard;
    WindowTraits& windowTraits;
    Launcher& launcher;
    core::Desktop desktop{}; ///< what the texts speak of
};

/// The grants as of the last refresh, and everything that helps the user to give them. Main thread.
class PermissionController {
public:
    /// The defaults key of the permissions that were asked for, as an array of their raw values.
    static constexpr auto requestKey = "QuillanePermissionRequestsV1";

    /// The defaults key of the flag that is left for the next launch by `restart`.
    static constexpr auto showPermissionsKey = "QuillaneShowPermissionsAfterRestart";

    PermissionController(const PermissionDesktop& desktop, core::ApplicationLocation location);

    /// Reads the grants again; listeners hear of it only when something differs.
    void refresh();

    /// Asks for a permission and says what to do, or, where a request is the grant, that it was given as soon as a
    /// refresh sees it. Nothing happens for a copy that is not installed, and while a request is being made.
    void request(core::MacPermission permission);

    /// Makes the next request that the policy wants, while the application is in front. Where a request is the grant,
    /// none is made without a click of the user's.
    void requestNextIfNeeded();

    /// Opens the page of the system's settings where the permission is granted.
    void openSettings(core::MacPermission permission);

    /// Puts the application's path on the pasteboard.
    void copyPath();

    /// Ends the program and starts it anew, so that grants take effect.
    void restart();

    [[nodiscard]] const std::set<core::MacPermission>& granted() const { return granted_; }

    [[nodiscard]] bool isRequesting() const { return requesting_; }

    [[nodiscard]] bool isInstalled() const { return location_.installed; }

    /// The user grants it in a list of the system's settings that this program appears in.
    [[nodiscard]] bool isGrantedInSettings() const { return desktop_.service.isGrantedInSettings(); }

    /// The last instruction; empty before there was one.
    [[nodiscard]] const core::LocalizedText& feedback() const { return feedback_; }

    [[nodiscard]] const core::ApplicationLocation& location() const { return location_; }

    [[nodiscard]] core::Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

    /// Set by the application delegate; each may be absent.
    std::function<void(core::MacPermission)> presentGuide;
    std::function<bool()> applicationIsActive;
    std::function<void()> terminate;

private:
    void saveRequests();
    bool tellOfSwitch();
    void say(const core::LocalizedText& text);

    PermissionDesktop desktop_;
    core::ApplicationLocation location_;
    core::PermissionSetupPolicy policy_;
    std::set<core::MacPermission> granted_;
    bool requesting_ = false;
    bool switchingOn_ = false; ///< Accessibility was requested where that grants it, and is not granted yet
    core::LocalizedText feedback_;
    core::Listeners<> changed_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionController.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"

#include <utility>

#include <unistd.h>

namespace quillane {

namespace {

namespace texts = core::texts;
using core::MacPermission;

std::set<MacPermission> storedRequests(const core::UserDefaults& defaults) {
    std::set<MacPermission> requested;
    const auto stored = defaults.stringArray(PermissionController::requestKey);
    for (const auto& text : stored ? *stored : std::vector<std::string>{}) {
        if (const auto permission = core::permissionFromRawValue(text)) {
            requested.insert(*permission);
        }
    }
    return requested;
}

} // namespace

PermissionController::PermissionController(const Platform& platform, core::ApplicationLocation location)
    : platform_(platform), location_(std::move(location)), policy_{storedRequests(*platform.userDefaults)} {
    refresh();
}

bool PermissionController::isGrantedInSettings() const {
    return platform_.permissions->isGrantedInSettings();
}

void PermissionController::refresh() {
    std::set<MacPermission> granted;
    for (const auto permission : core::allPermissions) {
        if (platform_.permissions->isGranted(permission)) {
            granted.insert(permission);
        }
    }
    const auto before = std::exchange(granted_, std::move(granted));
    const bool reported = reportGrant();
    if (reported || before != granted_) {
        changed_.notify();
    }
}

/// Whether the feedback has changed.
bool PermissionController::reportGrant() {
    const bool isOn = granted_.contains(MacPermission::accessibility);
    if (isOn && std::exchange(switchingOn_, false)) {
        feedback_ = texts::accessibilitySwitchedOn;
        return true;
    }
    if (!isOn && feedback_ == core::LocalizedText(texts::accessibilitySwitchedOn)) {
        feedback_ = {};
        return true;
    }
    return false;
}

void PermissionController::request(MacPermission permission) {
    if (!location_.installed || requesting_) {
        return;
    }
    requesting_ = true;
    policy_.recordRequest(permission);
    saveRequests();
    if (presentGuide && isGrantedInSettings()) {
        presentGuide(permission);
    }
    platform_.windowTraits->activateApplication();
    platform_.permissions->request(permission);
    if (!isGrantedInSettings()) {
        switchingOn_ = permission == MacPermission::accessibility && !granted_.contains(permission);
    } else {
        setFeedback(permission == MacPermission::accessibility ? texts::accessibilityRequested
                                                               : texts::inputMonitoringRequested);
    }
    requesting_ = false;
    refresh();
}

void PermissionController::requestNextIfNeeded() {
    if (requesting_ || !isGrantedInSettings() || !applicationIsActive || !applicationIsActive()) {
        return;
    }
    if (const auto next = policy_.nextAutomaticRequest(granted_, location_.installed)) {
        request(*next);
    }
}

void PermissionController::openSettings(MacPermission permission) {
    if (presentGuide && isGrantedInSettings()) {
        presentGuide(permission);
    }
    platform_.permissions->openSettings(permission);
}

void PermissionController::copyPath() {
    platform_.pasteboard->clear();
    if (platform_.pasteboard->setString(core::pasteboardTypes::string, location_.application.string())) {
        setFeedback(texts::appPathCopied);
    }
}

void PermissionController::restart() {
    platform_.userDefaults->setObject(showPermissionsKey, true);
    if (!platform_.launcher->launch(core::relaunchCommand(::getpid(), location_.application))) {
        setFeedback(texts::couldNotReopen.on(platform_.desktop));
    } else if (terminate) {
        terminate();
    }
}

void PermissionController::saveRequests() {
    core::PropertyListValue::Array values;
    for (const auto permission : policy_.requested) {
        values.emplace_back(std::string(rawValue(permission)));
    }
    platform_.userDefaults->setObject(requestKey, std::move(values));
}

void PermissionController::setFeedback(const core::LocalizedText& text) {
    feedback_ = text;
    changed_.notify();
}

} // namespace quillane

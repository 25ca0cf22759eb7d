// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegate.hpp"

#include "core/keyboard/ScreenSharingPolicy.hpp"
#include "core/permissions/PermissionSetupPolicy.hpp"

#include <utility>

// What runs, and what the model and the menu say of it.

namespace quillane {

void AppDelegate::applyOptions() {
    monitor_.setOptions(model_.options());
    monitor_.reset();
    direction_.cancelPending();
    if (model_.options().paused && !wasPaused_) {
        fileShare_.cancelAll();
    }
    wasPaused_ = model_.options().paused;
    refreshRuntime();
}

void AppDelegate::refreshRuntime() {
    refreshing_ = true;
    permissions_.refresh();
    loginItem_.refresh();
    checked_ = true;
    lookAround();
    runMonitor();
    publishRuntime();
    clipboard_.configure({.paused = model_.options().paused, .remote = surroundings_.screenSharingSuspended});
    model_.refreshKeepAwake();
    refreshing_ = false;
    updateStatusItem();
}

void AppDelegate::lookAround() {
    surroundings_.oldCopyRunning = !services_.workspace.runningApplications(environment_.legacyBundleID).empty();
    const auto front = services_.workspace.frontmostApplication();
    surroundings_.screenSharingSuspended = core::ScreenSharingPolicy::bypassKeyboardProcessing(
        front ? front->bundleID : std::nullopt, model_.options().excludeScreenSharing);
}

void AppDelegate::runMonitor() {
    const bool wanted = environment_.keyboardAvailable && model_.options().shouldMonitor() &&
                        core::PermissionSetupPolicy::canStartKeyboardMonitor(permissions_.granted());
    if (!wanted) {
        monitor_.stop();
        direction_.cancelPending();
    } else if (!monitor_.isRunning()) {
        direction_.cancelPending();
        static_cast<void>(monitor_.start()); // publishing reads whether it runs
    }
}

void AppDelegate::publishRuntime() {
    const auto facts = runtimeFacts();
    const auto input = input_.current();
    auto runtime = model_.runtime();
    runtime.accessibilityGranted = permissions_.granted().contains(core::MacPermission::accessibility);
    runtime.inputMonitoringGranted = permissions_.granted().contains(core::MacPermission::inputMonitoring);
    runtime.keyboardAvailable = facts.keyboardAvailable;
    runtime.monitorRunning = facts.monitorRunning;
    runtime.keyboardEventsObserved = monitor_.keyboardEventsObserved();
    runtime.screenSharingSuspended = facts.screenSharingSuspended;
    runtime.inputIsRTL = input.isRTL;
    runtime.inputName = input.name;
    runtime.runtimeStatus = statusRow(facts).text;
    model_.setRuntime(std::move(runtime));
}

RuntimeFacts AppDelegate::runtimeFacts() const {
    return {.desktop = services_.desktop,
            .options = model_.options(),
            .oldCopyRunning = surroundings_.oldCopyRunning,
            .keyboardAvailable = environment_.keyboardAvailable,
            .canStartMonitor = core::PermissionSetupPolicy::canStartKeyboardMonitor(permissions_.granted()),
            .grantedPermissions = permissions_.granted().size(),
            .screenSharingSuspended = surroundings_.screenSharingSuspended,
            .monitorRunning = monitor_.isRunning(),
            .keepAwakeActive = model_.runtime().keepAwakeActive};
}

} // namespace quillane

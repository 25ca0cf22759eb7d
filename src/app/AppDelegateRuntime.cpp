// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegate.hpp"

#include "core/keyboard/ScreenSharingPolicy.hpp"
#include "core/localization/Texts.hpp"
#include "core/permissions/PermissionSetupPolicy.hpp"

#include <cstdio>
#include <utility>

// What runs, and what the model and the menu show of it.

namespace quillane {

void AppDelegate::applyOptions() {
    monitor_.setOptions(model_.options());
    monitor_.setRetyping(model_.fixesWrongLayout());
    monitor_.reset();
    direction_.cancelPending();
    retyping_.cancel();
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
    createMenu();
}

void AppDelegate::lookAround() {
    surroundings_.oldCopyRunning = !platform_.workspace->runningApplications(environment_.legacyBundleID).empty();
    const auto front = platform_.workspace->frontmostApplication();
    surroundings_.screenSharingSuspended = core::screenSharingPolicy::bypassKeyboardProcessing(
        front ? front->bundleID : std::nullopt, model_.options().excludeScreenSharing);
}

void AppDelegate::runMonitor() {
    const bool wanted = environment_.keyboardAvailable && model_.shouldMonitor() &&
                        core::PermissionSetupPolicy::canStartKeyboardMonitor(permissions_.granted());
    if (!wanted) {
        monitor_.stop();
        direction_.cancelPending();
    } else if (!monitor_.isRunning()) {
        direction_.cancelPending();
        static_cast<void>(monitor_.start()); // publishing reads whether it runs
    }
    if (monitor_.isRunning() && (model_.options().shiftEnglish || model_.options().writingDirection)) {
        browserWaker_.wake(); // so that its fields are there when the first key or chord is for them
    }
    if (monitor_.isRunning() && model_.options().writingDirection && platform_.desktop == core::Desktop::macOS) {
        direction_.lookUpFront(); // elsewhere the items of closed menus cannot be pressed
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

/// Looks once whether the item is shown, when a tray has had the time; then only while the settings say that it is not.
void AppDelegate::lookForStatusItem(bool atLogin) {
    const bool isFirst = refreshesUntilItemCheck_ == 1;
    if (refreshesUntilItemCheck_ > 0 ? --refreshesUntilItemCheck_ > 0
                                     : model_.runtime().statusItemShown || !(settings_ && settings_->isVisible())) {
        return;
    }
    auto runtime = model_.runtime();
    runtime.statusItemShown = platform_.statusItem->isVisible();
    model_.setRuntime(std::move(runtime));
    if (isFirst && !model_.runtime().statusItemShown) {
        announceStart(atLogin);
    }
}

/// Without a place for the status item, nothing else shows that the program runs. Where the desktop shows no notices
/// either, its settings do, unless it was started at login.
void AppDelegate::announceStart(bool atLogin) {
    const auto language = preferences_.state().language;
    const core::LocalizedText isRunning(core::texts::quillaneIsRunning);
    const core::LocalizedText noTray(core::texts::noSystemTray);
    platform_.statusItem->notify(isRunning.rendered(language), noTray.rendered(language),
                                 [this, alive = lifetime_.watch(), isRunning, noTray, atLogin] {
                                     constexpr auto english = core::AppLanguage::english;
                                     std::fprintf(stderr, "%s. %s\n", isRunning.rendered(english).c_str(),
                                                  noTray.rendered(english).c_str());
                                     if (alive && !atLogin && !(settings_ && settings_->isVisible())) {
                                         showSettings(core::SettingsPage::general);
                                     }
                                 });
}

RuntimeFacts AppDelegate::runtimeFacts() const {
    return {.desktop = platform_.desktop,
            .options = model_.options(),
            .fixesWrongLayout = model_.fixesWrongLayout(),
            .oldCopyRunning = surroundings_.oldCopyRunning,
            .keyboardAvailable = environment_.keyboardAvailable,
            .canStartMonitor = core::PermissionSetupPolicy::canStartKeyboardMonitor(permissions_.granted()),
            .grantedPermissions = permissions_.granted().size(),
            .screenSharingSuspended = surroundings_.screenSharingSuspended,
            .monitorRunning = monitor_.isRunning(),
            .keepAwakeActive = model_.runtime().keepAwakeActive};
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "settings/SettingsModel.hpp"

#include "core/permissions/PermissionSetupPolicy.hpp"
#include "core/preferences/DefaultsKeys.hpp"

#include <utility>

namespace quillane {

namespace {

bool anyKeyboardFeature(const core::FeatureOptions& options) {
    return options.shiftEnglish || options.languageSwitch || options.writingDirection;
}

} // namespace

SettingsModel::SettingsModel(core::UserDefaults& defaults, core::SleepAssertionClient& sleepAssertions)
    : defaults_(defaults),
      sleepPrevention_(sleepAssertions),
      options_(core::FeatureOptions::load(defaults)),
      fixesWrongLayout_(defaults.boolean(core::defaultsKeys::fixWrongLayout).value_or(true)) {}

void SettingsModel::setOptions(const core::FeatureOptions& options) {
    options_ = options;
    options_.save(defaults_);
    if (optionsChanged) {
        optionsChanged();
    }
    emit changed();
}

void SettingsModel::setFixesWrongLayout(bool on) {
    fixesWrongLayout_ = on;
    defaults_.setObject(core::defaultsKeys::fixWrongLayout, core::PropertyListValue(on));
    if (optionsChanged) {
        optionsChanged();
    }
    emit changed();
}

void SettingsModel::setRuntime(Runtime runtime) {
    if (runtime != runtime_) {
        runtime_ = std::move(runtime);
        emit changed();
    }
}

void SettingsModel::refreshKeepAwake() {
    sleepPrevention_.setEnabled(options_.shouldKeepAwake());
    auto runtime = runtime_;
    runtime.keepAwakeActive = sleepPrevention_.isActive();
    runtime.keepAwakeFailed = sleepPrevention_.error().has_value();
    runtime.keepAwakeStatus = core::keepAwakeStatus(options_, runtime.keepAwakeFailed);
    setRuntime(std::move(runtime));
}

void SettingsModel::setLastAction(core::LocalizedText text) {
    lastAction_ = std::move(text);
    offer_.reset();
    emit changed();
}

void SettingsModel::offer(Offer offer) {
    offer_ = std::move(offer);
    emit changed();
}

void SettingsModel::setTestTargetID(std::string bundleID) {
    if (bundleID != testTargetID_) {
        testTargetID_ = std::move(bundleID);
        emit changed();
    }
}

void SettingsModel::setTestText(std::string text) {
    if (text != testText_) {
        testText_ = std::move(text);
        emit changed();
    }
}

void SettingsModel::setPage(core::SettingsPage page) {
    if (page != page_) {
        page_ = page;
        emit changed();
    }
}

bool SettingsModel::isReady() const {
    return runtime_.accessibilityGranted && runtime_.inputMonitoringGranted && !options_.paused &&
           anyKeyboardFeature(options_) && !runtime_.screenSharingSuspended;
}

bool SettingsModel::canTestDirection() const {
    return runtime_.monitorRunning && runtime_.accessibilityGranted && !options_.paused && options_.writingDirection &&
           !runtime_.screenSharingSuspended;
}

bool SettingsModel::needsRelaunch() const {
    return runtime_.keyboardAvailable && core::PermissionSetupPolicy::canStartKeyboardMonitor(granted()) &&
           shouldMonitor() && !(runtime_.monitorRunning && runtime_.keyboardEventsObserved);
}

std::set<core::MacPermission> SettingsModel::granted() const {
    std::set<core::MacPermission> result;
    if (runtime_.inputMonitoringGranted) {
        result.insert(core::MacPermission::inputMonitoring);
    }
    if (runtime_.accessibilityGranted) {
        result.insert(core::MacPermission::accessibility);
    }
    return result;
}

} // namespace quillane

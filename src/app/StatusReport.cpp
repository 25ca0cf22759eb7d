// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/StatusReport.hpp"

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace quillane {

std::string toJson(const StatusReport& report) {
    using Json = nlohmann::ordered_json;
    const auto& runtime = report.runtime;
    const auto& options = report.options;
    const Json json{
        {"version", report.version},
        {"pid", ::getpid()},
        {"language", core::languageID(report.language)},
        {"paused", options.paused},
        {"monitorRunning", runtime.monitorRunning},
        {"keyboardEventsObserved", runtime.keyboardEventsObserved},
        {"screenSharingSuspended", runtime.screenSharingSuspended},
        {"permissions",
         {{"accessibility", runtime.accessibilityGranted}, {"inputMonitoring", runtime.inputMonitoringGranted}}},
        {"inputSource", {{"name", runtime.inputName}, {"isRTL", runtime.inputIsRTL}}},
        {"options",
         {{"shiftEnglish", options.shiftEnglish},
          {"languageSwitch", options.languageSwitch},
          {"writingDirection", options.writingDirection},
          {"keepAwake", options.keepAwake},
          {"excludeScreenSharing", options.excludeScreenSharing}}},
        {"keepAwake",
         {{"active", runtime.keepAwakeActive},
          {"failed", runtime.keepAwakeFailed},
          {"status", runtime.keepAwakeStatus.rendered(report.language)}}},
        {"lastDirection",
         {{"direction", report.directions.last ? Json(core::rawValue(*report.directions.last)) : Json(nullptr)},
          {"count", report.directions.count}}},
        {"clipboard",
         {{"status", report.clipboard.status.rendered(report.language)},
          {"entries", report.clipboard.entries},
          {"storageError", report.clipboard.storageError},
          {"unread", report.clipboard.unread},
          {"setAside", report.clipboard.setAside},
          {"hotKeyConflict", report.clipboard.hotKeyConflict},
          {"panelOpen", report.clipboard.panelOpen}}},
        {"status", runtime.runtimeStatus.rendered(report.language)},
        {"lastAction", report.lastAction.rendered(report.language)},
        {"statusItemVisible", report.statusItemVisible},
    };
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string toText(const StatusReport& report) {
    auto text = "Quillane " + report.version + "\n" + report.runtime.runtimeStatus.rendered(report.language);
    if (report.runtime.keepAwakeFailed) {
        text += "\n" + report.runtime.keepAwakeStatus.rendered(report.language);
    }
    if (const auto action = report.lastAction.rendered(report.language); !action.empty()) {
        text += "\n" + action;
    }
    return text;
}

} // namespace quillane

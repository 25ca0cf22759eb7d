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
    const auto english = [](const core::LocalizedText& text) { return text.rendered(core::AppLanguage::english); };
    const auto shown = [&](const core::LocalizedText& text) { return text.rendered(report.language); };
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
          {"fixWrongLayout", report.fixesWrongLayout},
          {"keepAwake", options.keepAwake},
          {"excludeScreenSharing", options.excludeScreenSharing}}},
        {"keepAwake",
         {{"active", runtime.keepAwakeActive},
          {"failed", runtime.keepAwakeFailed},
          {"status", english(runtime.keepAwakeStatus)},
          {"shownStatus", shown(runtime.keepAwakeStatus)}}},
        {"lastDirection",
         {{"direction", report.directions.last ? Json(core::rawValue(*report.directions.last)) : Json(nullptr)},
          {"count", report.directions.count}}},
        {"clipboard",
         {{"status", english(report.clipboard.status)},
          {"shownStatus", shown(report.clipboard.status)},
          {"entries", report.clipboard.entries},
          {"storageError", report.clipboard.storageError},
          {"unread", report.clipboard.unread},
          {"usedElsewhere", report.clipboard.usedElsewhere},
          {"setAside", report.clipboard.setAside},
          {"hotKeyConflict", report.clipboard.hotKeyConflict},
          {"panelOpen", report.clipboard.panelOpen}}},
        {"status", english(runtime.runtimeStatus)},
        {"shownStatus", shown(runtime.runtimeStatus)},
        {"lastAction", english(report.lastAction)},
        {"shownLastAction", shown(report.lastAction)},
        {"statusItemVisible", report.statusItemVisible},
        {"passwordFields",
         {{"recognized", !report.passwordNotice},
          {"status", report.passwordNotice ? Json(english(*report.passwordNotice)) : Json(nullptr)},
          {"shownStatus", report.passwordNotice ? Json(shown(*report.passwordNotice)) : Json(nullptr)}}},
        {"frontProcess", report.frontProcess ? Json(*report.frontProcess) : Json(nullptr)},
    };
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string toText(const StatusReport& report) {
    constexpr auto english = core::AppLanguage::english;
    auto text = "Quillane " + report.version + "\n" + report.runtime.runtimeStatus.rendered(english);
    if (report.runtime.keepAwakeFailed) {
        text += "\n" + report.runtime.keepAwakeStatus.rendered(english);
    }
    if (const auto action = report.lastAction.rendered(english); !action.empty()) {
        text += "\n" + action;
    }
    if (report.passwordNotice) {
        text += "\n" + report.passwordNotice->rendered(english);
    }
    return text;
}

} // namespace quillane

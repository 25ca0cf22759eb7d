// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/StatusReport.hpp"

#include "core/localization/Texts.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

#include <unistd.h>

namespace quillane {
namespace {

using nlohmann::json;
namespace texts = core::texts;

json parsed(const StatusReport& report) {
    return json::parse(toJson(report));
}

/// A fact, where the report has it, and its values before and after it changes.
struct Fact {
    std::string place;
    std::function<void(StatusReport&)> change;
    json before;
    json after;
};

TEST(StatusReport, EachFactHasItsPlace) {
    const std::vector<Fact> facts{
        {"/version", [](auto& report) { report.version = "1.2"; }, "", "1.2"},
        {"/paused", [](auto& report) { report.options.paused = true; }, false, true},
        {"/monitorRunning", [](auto& report) { report.runtime.monitorRunning = true; }, false, true},
        {"/keyboardEventsObserved", [](auto& report) { report.runtime.keyboardEventsObserved = true; }, false, true},
        {"/screenSharingSuspended", [](auto& report) { report.runtime.screenSharingSuspended = true; }, false, true},
        {"/permissions/accessibility", [](auto& report) { report.runtime.accessibilityGranted = true; }, false, true},
        {"/permissions/inputMonitoring", [](auto& report) { report.runtime.inputMonitoringGranted = true; }, false,
         true},
        {"/inputSource/name", [](auto& report) { report.runtime.inputName = "Hebrew"; }, "", "Hebrew"},
        {"/inputSource/isRTL", [](auto& report) { report.runtime.inputIsRTL = true; }, false, true},
        {"/options/shiftEnglish", [](auto& report) { report.options.shiftEnglish = false; }, true, false},
        {"/options/languageSwitch", [](auto& report) { report.options.languageSwitch = false; }, true, false},
        {"/options/writingDirection", [](auto& report) { report.options.writingDirection = false; }, true, false},
        {"/options/fixWrongLayout", [](auto& report) { report.fixesWrongLayout = true; }, false, true},
        {"/options/keepAwake", [](auto& report) { report.options.keepAwake = true; }, false, true},
        {"/options/excludeScreenSharing", [](auto& report) { report.options.excludeScreenSharing = false; }, true,
         false},
        {"/keepAwake/active", [](auto& report) { report.runtime.keepAwakeActive = true; }, false, true},
        {"/keepAwake/failed", [](auto& report) { report.runtime.keepAwakeFailed = true; }, false, true},
        {"/lastDirection/direction", [](auto& report) { report.directions.last = core::WritingDirection::rightToLeft; },
         nullptr, "RTL"},
        {"/lastDirection/count", [](auto& report) { report.directions.count = 3; }, 0, 3},
        {"/clipboard/entries", [](auto& report) { report.clipboard.entries = 4; }, 0, 4},
        {"/clipboard/storageError", [](auto& report) { report.clipboard.storageError = true; }, false, true},
        {"/clipboard/unread", [](auto& report) { report.clipboard.unread = true; }, false, true},
        {"/clipboard/usedElsewhere", [](auto& report) { report.clipboard.usedElsewhere = true; }, false, true},
        {"/clipboard/setAside", [](auto& report) { report.clipboard.setAside = 5; }, 0, 5},
        {"/clipboard/hotKeyConflict", [](auto& report) { report.clipboard.hotKeyConflict = true; }, false, true},
        {"/clipboard/panelOpen", [](auto& report) { report.clipboard.panelOpen = true; }, false, true},
        {"/statusItemVisible", [](auto& report) { report.statusItemVisible = true; }, false, true},
        {"/frontProcess", [](auto& report) { report.frontProcess = 77; }, nullptr, 77},
    };
    for (const auto& [place, change, before, after] : facts) {
        StatusReport report;
        const auto first = parsed(report);
        change(report);
        const auto second = parsed(report);
        EXPECT_EQ(first.value(json::json_pointer(place), json("missing")), before) << place;
        EXPECT_EQ(second.value(json::json_pointer(place), json("missing")), after) << place;
        EXPECT_EQ(json::diff(first, second).size(), 1U) << place;
    }
}

TEST(StatusReport, TextsAreInEnglishAndAsTheyAreShown) {
    StatusReport report;
    report.language = core::AppLanguage::hebrew;
    report.runtime.keepAwakeStatus = texts::quickTest;
    report.runtime.runtimeStatus = texts::shortcutsActive;
    report.clipboard.status = texts::clipboardHistoryOff;
    report.lastAction = texts::openSelectedApp;
    report.passwordNotice = texts::passwordFieldsUnrecognized("Editor");
    const auto found = parsed(report);
    const auto expect = [&](const char* english, const char* shown, const core::LocalizedText& text) {
        EXPECT_EQ(found.at(json::json_pointer(english)), text.rendered(core::AppLanguage::english)) << english;
        EXPECT_EQ(found.at(json::json_pointer(shown)), text.rendered(core::AppLanguage::hebrew)) << shown;
    };
    EXPECT_EQ(found.at("language"), core::languageID(core::AppLanguage::hebrew));
    EXPECT_EQ(found.at("pid"), ::getpid());
    expect("/keepAwake/status", "/keepAwake/shownStatus", report.runtime.keepAwakeStatus);
    expect("/status", "/shownStatus", report.runtime.runtimeStatus);
    expect("/clipboard/status", "/clipboard/shownStatus", report.clipboard.status);
    expect("/lastAction", "/shownLastAction", report.lastAction);
    expect("/passwordFields/status", "/passwordFields/shownStatus", *report.passwordNotice);
    EXPECT_EQ(found.at("passwordFields").at("recognized"), false);
}

TEST(StatusReport, IsOneLineWhateverTheNames) {
    StatusReport report;
    report.runtime.inputName = "two\nlines \xFF";
    const auto text = toJson(report);
    EXPECT_EQ(text.find('\n'), std::string::npos);
    EXPECT_EQ(json::parse(text)["inputSource"]["name"], "two\nlines \uFFFD");
}

TEST(StatusReport, TextHasALineForWhatThereIsToSay) {
    StatusReport report{.version = "1.2"};
    report.runtime.runtimeStatus = texts::shortcutsActive;
    report.runtime.keepAwakeStatus = texts::quickTest;
    EXPECT_EQ(toText(report), "Quillane 1.2\nShortcuts are active");
    const auto english = [](const core::LocalizedText& text) { return text.rendered(core::AppLanguage::english); };
    report.runtime.keepAwakeFailed = true;
    report.lastAction = texts::openSelectedApp;
    report.passwordNotice = texts::passwordFieldsUnrecognized("Editor");
    EXPECT_EQ(toText(report), "Quillane 1.2\nShortcuts are active\n" + english(texts::quickTest) + "\n" +
                                  english(texts::openSelectedApp) + "\n" + english(*report.passwordNotice));
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "core/direction/SupportedApplication.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "fakes/KnownTexts.hpp"
#include "settings/SettingsView.hpp"

namespace quillane {
namespace {

using core::AppLanguage;

class SettingsTextsTests : public SettingsTest, public testing::WithParamInterface<AppLanguage> {};

TEST_P(SettingsTextsTests, EveryTextHasARowInTheTable) {
    fakes::KnownTexts known(GetParam());
    for (const auto* data : {"English", "עברית", "العربية", "−", "+", "Editor", "com.example.editor", "ABC"}) {
        known.allow(QString::fromUtf8(data));
    }
    known.allow(QString::fromStdString(core::FileShareServer::standard().host()));
    for (const auto& application : core::supportedApplications) {
        known.allow(QString::fromUtf8(application.displayName.data()));
    }
    preferences.choose(GetParam());
    clipboardOptions.ignoredApps = {"com.example.editor"};
    shortcutTaken = true;
    historyIsUnsaved = true;
    pasteboardAccess = PasteboardAccess::denied;
    historyIsUnread = true;
    setAside = {{"aside", {785'592'000}}};
    lastRecovery = {1, 2};
    auto runtime = model.runtime();
    runtime.inputName = "ABC";
    runtime.runtimeStatus = core::texts::shortcutsActive;
    model.setRuntime(runtime);
    desktop.withPermissions({core::MacPermission::inputMonitoring});
    permissions.refresh();
    permissions.copyPath();
    model.refreshKeepAwake();
    for (const auto page : core::allSettingsPages) {
        present(page);
        known.checkWindow(window());
    }
    EXPECT_GT(known.checked(), 500);
}

INSTANTIATE_TEST_SUITE_P(In, SettingsTextsTests, testing::ValuesIn(core::allLanguages),
                         [](const auto& parameter) { return std::string(core::languageID(parameter.param)); });

} // namespace
} // namespace quillane

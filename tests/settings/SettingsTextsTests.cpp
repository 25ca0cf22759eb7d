// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "settings/SettingsView.hpp"
#include "support/KnownTexts.hpp"

#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

#include <tuple>

namespace quillane {
namespace {

using core::AppLanguage;
using core::Desktop;
using core::SettingsPage;

class SettingsTextsTest : public SettingsTest, public testing::WithParamInterface<std::tuple<AppLanguage, Desktop>> {
protected:
    SettingsTextsTest() {
        shownOn = std::get<Desktop>(GetParam());
        preferences.choose(language());
    }

    static AppLanguage language() { return std::get<AppLanguage>(GetParam()); }
};

TEST_P(SettingsTextsTest, EveryTextHasARowInTheTable) {
    fakes::KnownTexts known(language(), shownOn);
    for (const auto* data : {"English", "עברית", "العربية", "−", "+", "Editor", "com.example.editor", "ABC"}) {
        known.allow(QString::fromUtf8(data));
    }
    known.allow(QString::fromStdString(core::FileShareServer::standard().host()));
    for (const auto& target : core::directionTestTargets(shownOn)) {
        known.allow(QString::fromUtf8(target.name.data(), static_cast<qsizetype>(target.name.size())));
    }
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
        known.checkWindowAndMenus(window());
        fakes::openDropDownLists(window(), [&](const QComboBox& box) { known.check(box); });
    }
    EXPECT_GT(known.checked(), 1000);
}

TEST_P(SettingsTextsTest, TheQuestionAndTheListOfApplicationsAreInTheLanguage) {
    fakes::KnownTexts known(language(), shownOn);
    known.allow("Mail");
    known.allow("Editor");
    present(SettingsPage::clipboard);
    find<QPushButton>("addApplication").click();
    settle();
    auto* menu = window().findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    known.checkMenu(*menu);
    const auto direction = core::isRTL(language()) ? Qt::RightToLeft : Qt::LeftToRight;
    EXPECT_EQ(menu->layoutDirection(), direction);
    menu->close();
    find<QPushButton>("clear").click();
    settle();
    auto* question = window().findChild<QMessageBox*>();
    ASSERT_NE(question, nullptr);
    known.checkWindow(*question);
    EXPECT_EQ(question->layoutDirection(), direction);
    question->reject();
    EXPECT_GT(known.checked(), 10);
}

INSTANTIATE_TEST_SUITE_P(In, SettingsTextsTest,
                         testing::Combine(testing::ValuesIn(core::allLanguages),
                                          testing::Values(Desktop::macOS, Desktop::linuxDesktop)),
                         [](const auto& parameter) {
                             return std::string(core::languageID(std::get<AppLanguage>(parameter.param))) +
                                    (std::get<Desktop>(parameter.param) == Desktop::macOS ? "_macOS" : "_Linux");
                         });

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "settings/PageSelector.hpp"
#include "support/FocusableNames.hpp"

#include <QAbstractItemView>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>

namespace quillane {
namespace {

using core::AppLanguage;
using core::SettingsPage;

/// What assistive technologies see of the settings window.
class SettingsAccessibilityTest : public SettingsTest, public testing::WithParamInterface<AppLanguage> {
protected:
    SettingsAccessibilityTest() {
        preferences.choose(GetParam());
        clipboardOptions.enabled = true;
        clipboardOptions.ignoredApps = {"com.example.editor"};
        shortcutTaken = historyIsUnsaved = true;
    }

    [[nodiscard]] static QAccessibleInterface& accessible(QWidget& widget) {
        return *QAccessible::queryAccessibleInterface(&widget);
    }

    [[nodiscard]] static QString rendered(const core::LocalizedText& text) {
        return QString::fromStdString(text.rendered(GetParam()));
    }
};

TEST_P(SettingsAccessibilityTest, EverythingThatTakesTheFocusHasAName) {
    for (const auto page : core::allSettingsPages) {
        fakes::expectNamedFocusables(present(page));
        EXPECT_GE(fakes::focusables(window()).names.size(), 8) << "the window, the language, six pages";
    }
}

TEST_P(SettingsAccessibilityTest, QuestionBeforeClearingHasNames) {
    present(SettingsPage::clipboard);
    find<QPushButton>("clear").click();
    settle();
    auto* question = window().findChild<QMessageBox*>();
    ASSERT_NE(question, nullptr);
    fakes::expectNamedFocusables(*question);
}

TEST_P(SettingsAccessibilityTest, EveryListToChooseFromHasTheNameOfItsPurpose) {
    const std::pair<SettingsPage, std::pair<const char*, core::LocalizedText>> lists[] = {
        {SettingsPage::general, {"language", core::texts::interfaceLanguage}},
        {SettingsPage::clipboard, {"panelPlace", core::texts::openPanelAt}},
        {SettingsPage::testing, {"target", core::texts::applicationToTest}},
    };
    for (const auto& [page, list] : lists) {
        present(page);
        auto& box = find<QComboBox>(list.first);
        box.setCurrentIndex(0);
        auto& picker = accessible(box);
        EXPECT_EQ(picker.role(), QAccessible::ComboBox);
        EXPECT_EQ(picker.text(QAccessible::Name), rendered(list.second));
        EXPECT_EQ(picker.text(QAccessible::Value), box.currentText());
        ASSERT_NE(picker.textInterface(), nullptr);
        EXPECT_EQ(picker.textInterface()->text(0, picker.textInterface()->characterCount()), box.currentText());
        picker.actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        settle();
        EXPECT_TRUE(picker.state().expanded);
        fakes::expectNamedFocusables(*box.view()->window());
        picker.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_FALSE(picker.state().expanded);
    }
}

TEST_P(SettingsAccessibilityTest, PageSelectorIsAListOfTabsOfWhichOneIsSelected) {
    present(SettingsPage::clipboard);
    auto& selector = accessible(*window().findChild<PageSelector*>());
    EXPECT_EQ(selector.role(), QAccessible::PageTabList);
    EXPECT_EQ(selector.text(QAccessible::Name), rendered(core::texts::settingsPages));
    ASSERT_EQ(selector.childCount(), 6);
    for (int i = 0; i < selector.childCount(); ++i) {
        auto* tab = selector.child(i);
        const auto page = core::allSettingsPages.at(static_cast<std::size_t>(i));
        EXPECT_EQ(tab->role(), QAccessible::PageTab);
        EXPECT_EQ(tab->text(QAccessible::Name), rendered(core::title(page)));
        EXPECT_EQ(tab->state().selected != 0, page == SettingsPage::clipboard) << i;
        EXPECT_FALSE(tab->state().checkable);
    }
    selector.child(5)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(model.page(), SettingsPage::updates);
    EXPECT_TRUE(selector.child(5)->state().selected);
    EXPECT_FALSE(selector.child(2)->state().selected);
}

INSTANTIATE_TEST_SUITE_P(In, SettingsAccessibilityTest, testing::ValuesIn(core::allLanguages),
                         [](const auto& parameter) { return std::string(core::languageID(parameter.param)); });

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "core/keyboard/ApplicationSources.hpp"
#include "core/localization/DateText.hpp"
#include "settings/PageSelector.hpp"
#include "settings/SettingsView.hpp"
#include "settings/SwitchButton.hpp"
#include "support/Contrast.hpp"
#include "views/Colors.hpp"
#include "views/WrappingLabel.hpp"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <algorithm>

namespace quillane {
namespace {

using core::AppLanguage;
using core::SettingsPage;

class SettingsWindowTest : public SettingsTest {
protected:
    [[nodiscard]] SwitchButton& switchNamed(const char* name) {
        for (auto* button : window().findChildren<SwitchButton*>()) {
            if (button->accessibleName() == QLatin1String(name)) {
                return *button;
            }
        }
        throw std::logic_error(std::string("no switch ") + name);
    }

    [[nodiscard]] int visibleSetAside() {
        const auto rows = window().findChildren<QWidget*>("setAside");
        return static_cast<int>(std::ranges::count_if(rows, [](const QWidget* row) { return row->isVisible(); }));
    }

    [[nodiscard]] QString question() { return window().findChild<QMessageBox*>()->text(); }

    /// Presses a button of the open message box, which then closes.
    void answer(const char* text) {
        const auto* box = window().findChild<QMessageBox*>();
        ASSERT_NE(box, nullptr);
        const auto buttons = box->buttons();
        const auto found = std::ranges::find(buttons, QString::fromLatin1(text), &QAbstractButton::text);
        ASSERT_NE(found, buttons.end());
        (*found)->click();
        settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(SettingsWindowTest, HasItsTitleAndSizes) {
    EXPECT_EQ(window().windowTitle(), "Quillane — Settings");
    EXPECT_EQ(window().size(), QSize(760, 780));
    EXPECT_EQ(window().minimumSize(), QSize(740, 720));
}

TEST_F(SettingsWindowTest, IsAnApplicationLikeOthersWhileItIsOpen) {
    present(SettingsPage::general);
    EXPECT_EQ(desktop.windowTraits.policies().back(), ActivationPolicy::regular);
    EXPECT_GE(desktop.windowTraits.activations, 1);
    window().close();
    EXPECT_EQ(desktop.windowTraits.policies().back(), ActivationPolicy::accessory);
}

TEST_F(SettingsWindowTest, KeepsItsFrameAndPageWhenItIsClosedAndItsFrameAcrossLaunches) {
    present(SettingsPage::shortcuts);
    window().setGeometry(20, 10, 750, 730);
    window().close();
    present(model.page());
    EXPECT_EQ(model.page(), SettingsPage::shortcuts);
    EXPECT_EQ(window().size(), QSize(750, 730));
    const auto place = window().pos();
    window().close();
    closeForever();
    EXPECT_EQ(window().pos(), place);
    EXPECT_EQ(window().size(), QSize(750, 730));
}

TEST_F(SettingsWindowTest, AFrameThatCannotBeReachedOrReadIsReplaced) {
    for (const auto* frame : {"90000 90000 760 780", "nonsense", "1 2 3", "10 10 x 9", ""}) {
        desktop.userDefaults.setObject(SettingsWindow::frameKey, frame);
        EXPECT_TRUE(QRect(0, 0, 2000, 2000).intersects(window().geometry())) << frame;
        EXPECT_EQ(window().size(), QSize(760, 780)) << frame;
        closeForever();
    }
}

TEST_F(SettingsWindowTest, ThePageSelectorLeadsToEveryPageByMouseAndByArrowKey) {
    present(SettingsPage::general);
    auto buttons = window().findChildren<PageButton*>();
    ASSERT_EQ(buttons.size(), 6);
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        buttons[i]->click();
        EXPECT_EQ(model.page(), core::allSettingsPages.at(static_cast<std::size_t>(i)));
        EXPECT_TRUE(buttons[i]->isChecked());
    }
    buttons[0]->click();
    buttons[0]->setFocus();
    QTest::keyClick(buttons[0], Qt::Key_Right);
    EXPECT_EQ(model.page(), SettingsPage::shortcuts);
}

TEST_F(SettingsWindowTest, SwitchesAreTheOptions) {
    present(SettingsPage::general);
    auto& shift = switchNamed("Temporary English with Shift");
    EXPECT_TRUE(shift.isChecked());
    shift.click();
    EXPECT_FALSE(model.options().shiftEnglish);
    auto options = model.options();
    options.shiftEnglish = true;
    model.setOptions(options);
    EXPECT_TRUE(shift.isChecked());
    shift.setFocus();
    QTest::keyClick(&shift, Qt::Key_Space);
    EXPECT_FALSE(model.options().shiftEnglish);
}

TEST_F(SettingsWindowTest, FileManagerThatTakesAnEntryFromItsUserHasASwitch) {
    present(SettingsPage::general);
    EXPECT_FALSE(shows("Share from the file manager Nautilus"));
    closeForever();
    desktop.servicesMenu.canHaveUserEntry = true;
    present(SettingsPage::general);
    auto& entry = switchNamed("Share from the file manager Nautilus");
    EXPECT_FALSE(entry.isChecked());
    entry.click();
    EXPECT_TRUE(desktop.servicesMenu.userEntry);
    EXPECT_TRUE(entry.isChecked());
    entry.click();
    EXPECT_FALSE(desktop.servicesMenu.userEntry);
}

TEST_F(SettingsWindowTest, KeepAwakeSaysHowItStands) {
    model.optionsChanged = [this] { model.refreshKeepAwake(); };
    model.refreshKeepAwake();
    present(SettingsPage::general);
    EXPECT_TRUE(shows("Keep Awake is off"));
    switchNamed("Keep Mac Awake").click();
    EXPECT_TRUE(shows("Keep Awake — on indefinitely"));
    switchNamed("Keep Mac Awake").click();
    desktop.sleepAssertions.refuse(core::SleepAssertionKind::system, 1);
    switchNamed("Keep Mac Awake").click();
    EXPECT_TRUE(shows("Could not prevent sleep. Turn off and on to retry."));
}

TEST_F(SettingsWindowTest, TheLoginItemSwitchFollowsTheSystem) {
    present(SettingsPage::general);
    auto& login = switchNamed("Launch Quillane at login");
    login.click();
    EXPECT_TRUE(login.isChecked());
    EXPECT_TRUE(shows("On — Quillane will start when you sign in"));
    desktop.loginItem.fails = true;
    login.click();
    EXPECT_TRUE(login.isChecked());
    EXPECT_TRUE(shows("Could not change automatic startup. Try again or open Login Items settings."));
    buttonNamed("Open Login Items settings").click();
    EXPECT_EQ(desktop.loginItem.openings, 1);
}

TEST_F(SettingsWindowTest, ComingBackToTheWindowRefreshes) {
    int refreshes = 0;
    model.refresh = [&] { ++refreshes; };
    present(SettingsPage::general);
    EXPECT_EQ(refreshes, 1);
}

TEST_F(SettingsWindowTest, ClipboardOptionsAreBoundBothWays) {
    present(SettingsPage::clipboard);
    switchNamed("Clipboard history").click();
    EXPECT_TRUE(clipboardOptions.enabled);
    EXPECT_TRUE(shows("History limit: 200"));
    for (auto* stepper : window().findChildren<QAbstractButton*>()) {
        if (stepper->accessibleName() == QLatin1String("Increase: History limit: 200")) {
            stepper->click();
            break;
        }
    }
    EXPECT_EQ(clipboardOptions.limit, 210);
    EXPECT_TRUE(shows("History limit: 210"));
    find<QComboBox>("panelPlace").activated(1);
    EXPECT_FALSE(clipboardOptions.popupAtCursor);
}

TEST_F(SettingsWindowTest, ExcludedApplicationsCanBeRemoved) {
    clipboardOptions.ignoredApps = {"com.example.editor", "com.example.gone"};
    present(SettingsPage::clipboard);
    EXPECT_TRUE(shows("Editor"));
    EXPECT_TRUE(shows("com.example.gone"));
    find<QPushButton>("remove").click();
    EXPECT_EQ(clipboardOptions.ignoredApps, std::vector<std::string>{"com.example.gone"});
    EXPECT_FALSE(shows("Editor"));
}

TEST_F(SettingsWindowTest, AnApplicationIsChosenAmongRunningAndInstalledOnes) {
    desktop.applicationCatalog.applications.push_back({"com.example.archive", "archive & more"});
    clipboardOptions.ignoredApps = {"com.example.mail"};
    present(SettingsPage::clipboard);
    find<QPushButton>("addApplication").click();
    EXPECT_EQ(window().findChild<QMenu*>(), nullptr); // nothing waits for the list
    settle();
    const auto* menu = window().findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    QStringList names;
    for (const auto* action : menu->actions()) {
        names << (action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    EXPECT_EQ(names, QStringList({"Editor", "-", "archive && more"})); // what runs comes first
    menu->actions().at(0)->trigger();
    EXPECT_EQ(clipboardOptions.ignoredApps, (std::vector<std::string>{"com.example.mail", "com.example.editor"}));
    settle();
    EXPECT_TRUE(shows("Editor"));
}

TEST_F(SettingsWindowTest, AListOfApplicationsThatComesAfterTheWindowIsGoneChangesNothing) {
    window().present(SettingsPage::clipboard);
    closeForever();
    EXPECT_NO_THROW(desktop.settle());
}

TEST_F(SettingsWindowTest, AWarningHasTheColourOfWarnings) {
    present(SettingsPage::general);
    for (const bool dark : {true, false}) {
        useDark(dark);
        find<QLineEdit>("address").setText("http://files.example");
        auto& warning = find<QLabel>("warning");
        EXPECT_TRUE(warning.isVisibleTo(&window()));
        const auto& shades = core::brandPalette::shades(dark ? core::Appearance::dark : core::Appearance::light);
        EXPECT_EQ(warning.palette().color(QPalette::WindowText), qColor(shades.warning));
    }
}

TEST_F(SettingsWindowTest, AShortcutThatIsTakenCanBeTriedAgain) {
    present(SettingsPage::clipboard);
    const QString taken = "The shortcut is in use. Quit Maccy or change the shortcut in the other app, then retry.";
    EXPECT_TRUE(shows("Clipboard history is active"));
    EXPECT_FALSE(shows(taken));
    shortcutTaken = true;
    window().view().refresh();
    EXPECT_TRUE(shows(taken));
    EXPECT_FALSE(shows("Clipboard history is active"));
    buttonNamed("Retry shortcut registration").click();
    EXPECT_EQ(retries, 1);
}

TEST_F(SettingsWindowTest, APasteboardThatMayNotBeReadIsReportedWithAButtonToItsSettings) {
    present(SettingsPage::clipboard);
    const auto& row = find<QWidget>("pasteboardAccess");
    EXPECT_FALSE(row.isVisible());
    pasteboardAccess = PasteboardAccess::asked;
    window().view().refresh();
    EXPECT_TRUE(
        shows("macOS asks each time Quillane reads what was copied. You can always allow it in System Settings."));
    pasteboardAccess = PasteboardAccess::denied;
    window().view().refresh();
    EXPECT_TRUE(shows("macOS does not let Quillane read what was copied. You can allow it in System Settings."));
    row.findChild<QPushButton*>()->click();
    EXPECT_EQ(accessSettingsOpened, 1);
}

TEST_F(SettingsWindowTest, AHistoryThatCannotBeSavedIsReported) {
    present(SettingsPage::clipboard);
    const QString unsaved = "Cannot save encrypted history. History is available in memory only.";
    EXPECT_FALSE(shows(unsaved));
    historyIsUnsaved = true;
    window().view().refresh();
    EXPECT_TRUE(shows(unsaved));
}

TEST_F(SettingsWindowTest, HistoryThatCannotBeReadNowIsReportedAsUnchanged) {
    present(SettingsPage::clipboard);
    const QString unread =
        "The saved history cannot be read right now. It stays unchanged, and another attempt will follow.";
    historyIsUnsaved = true;
    window().view().refresh();
    EXPECT_FALSE(shows(unread));
    historyIsUnread = true;
    window().view().refresh();
    EXPECT_TRUE(shows(unread));
}

TEST_F(SettingsWindowTest, HistoryThatAnotherProgramWritesIsSaidToBeInUse) {
    present(SettingsPage::clipboard);
    const QString inUse = "Another copy of Quillane is using the saved history. History is available in memory only.";
    historyIsUnsaved = true;
    window().view().refresh();
    EXPECT_FALSE(shows(inUse));
    historyIsUsedElsewhere = true;
    window().view().refresh();
    EXPECT_TRUE(shows(inUse));
    EXPECT_FALSE(shows("Cannot save encrypted history. History is available in memory only."));
}

TEST_F(SettingsWindowTest, HistoriesThatWereSetAsideAreRecoveredOrDeletedWhenThatIsConfirmed) {
    present(SettingsPage::clipboard);
    EXPECT_EQ(visibleSetAside(), 0);
    const core::SetAsideHistory first{"first", {785'592'000}};
    const core::SetAsideHistory second{"second", {785'500'000}};
    setAside = {first, second};
    window().view().refresh();
    EXPECT_EQ(visibleSetAside(), 2);
    EXPECT_TRUE(
        shows(QString::fromStdString(core::texts::historySetAsideOn(core::dateText(first.date, AppLanguage::english))
                                         .rendered(AppLanguage::english))));
    const auto recoverButtons = window().findChildren<QPushButton*>("recover");
    ASSERT_EQ(recoverButtons.size(), 3);
    recoverButtons[1]->click();
    answer("Cancel");
    EXPECT_TRUE(recovered.empty());
    recoverButtons[1]->click();
    answer("Recover");
    EXPECT_EQ(recovered, std::vector{second});
    recoverButtons[0]->click();
    answer("Delete");
    EXPECT_EQ(setAside, std::vector{second});
    window().view().refresh();
    EXPECT_EQ(visibleSetAside(), 1);
    historyIsUnsaved = true;
    window().view().refresh();
    EXPECT_FALSE(recoverButtons[0]->isEnabled());
    lastRecovery = {12, 13};
    window().view().refresh();
    EXPECT_TRUE(shows("Items recovered: 12 of 13"));
}

TEST_F(SettingsWindowTest, ClearingAsksFirstAndMayKeepThePins) {
    present(SettingsPage::clipboard);
    find<QPushButton>("clear").click();
    EXPECT_EQ(question(), "Delete all history, including pinned items?");
    answer("Cancel");
    EXPECT_TRUE(clearings.empty());
    find<QPushButton>("clearUnpinned").click();
    EXPECT_EQ(question(), "Delete all items that are not pinned?");
    answer("Delete");
    EXPECT_EQ(clearings, std::vector{core::ClipboardHistory::Clearing::keepPins});
    find<QPushButton>("clear").click();
    answer("Delete");
    EXPECT_EQ(clearings.back(), core::ClipboardHistory::Clearing::includePins);
}

TEST_F(SettingsWindowTest, WhileACheckRunsTheButtonIsDisabled) {
    present(SettingsPage::updates);
    EXPECT_TRUE(shows("Installed version: 1.2"));
    EXPECT_TRUE(shows("No update check yet"));
    auto& check = find<QPushButton>("checkNow");
    check.click();
    EXPECT_FALSE(check.isEnabled());
    desktop.updater.finish({0});
    EXPECT_TRUE(check.isEnabled());
    EXPECT_FALSE(shows("No update check yet"));
}

TEST_F(SettingsWindowTest, ABuildWithoutAnUpdateKeySaysSo) {
    desktop.updater.key = false;
    present(SettingsPage::updates);
    EXPECT_TRUE(shows("This copy was built without an update key, so it does not update itself."));
    EXPECT_EQ(window().findChild<QPushButton*>("checkNow"), nullptr);
}

TEST_F(SettingsWindowTest, ChoosingALanguageRedrawsEverythingMirrored) {
    present(SettingsPage::shortcuts);
    find<QComboBox>("language").activated(1);
    EXPECT_EQ(preferences.state().language, AppLanguage::hebrew);
    EXPECT_EQ(window().view().layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(window().windowTitle().toStdString(), core::texts::settingsWindowTitle.rendered(AppLanguage::hebrew));
    EXPECT_TRUE(shows(QString::fromStdString(core::texts::leftToRight.rendered(AppLanguage::hebrew))));
    find<QComboBox>("language").activated(0);
    EXPECT_EQ(window().view().layoutDirection(), Qt::LeftToRight);
    EXPECT_TRUE(shows("Left to right"));
}

TEST_F(SettingsWindowTest, MainButtonShowsItsStateAndIsReadableInEach) {
    for (const bool dark : {true, false}) {
        useDark(dark);
        present(SettingsPage::updates);
        auto& check = find<QPushButton>("checkNow");
        window().activateWindow();
        window().view().setFocus();
        settle();
        const auto plain = check.grab().toImage();
        EXPECT_GE(fakes::textContrast(check), 4.5);
        check.setFocus();
        EXPECT_NE(check.grab().toImage(), plain);
        EXPECT_GE(fakes::textContrast(check), 4.5);
        check.setEnabled(false);
        EXPECT_NE(check.grab().toImage(), plain);
        EXPECT_GE(fakes::textContrast(check), 4.5);
        check.setEnabled(true);
    }
}

TEST_F(SettingsWindowTest, ADarkAppearanceIsFollowedWhileItIsOpen) {
    useDark(false);
    present(SettingsPage::general);
    const auto wordmark = find<QLabel>("wordmark").text();
    const auto light = window().grab().toImage().pixelColor(3, 3);
    useDark(true);
    EXPECT_EQ(window().grab().toImage().pixelColor(3, 3),
              qColor(core::brandPalette::shades(core::Appearance::dark).window));
    EXPECT_EQ(light, qColor(core::brandPalette::shades(core::Appearance::light).window));
    EXPECT_NE(find<QLabel>("wordmark").text(), wordmark);
    useDark(false);
}

TEST_F(SettingsWindowTest, EveryLabelThatWrapsBeginsItsLinesFlush) {
    for (const auto page : core::allSettingsPages) {
        present(page);
        for (const auto* label : window().findChildren<QLabel*>()) {
            EXPECT_TRUE(!label->wordWrap() || dynamic_cast<const WrappingLabel*>(label)) << label->text().toStdString();
        }
    }
}

TEST_F(SettingsWindowTest, TheSignAtTheCursorHasASwitchOfItsOwn) {
    present(SettingsPage::shortcuts);
    auto& sign = switchNamed("Show a sign at the text cursor");
    EXPECT_TRUE(sign.isChecked());
    sign.click();
    EXPECT_EQ(desktop.userDefaults.boolean("ChordSignEnabled"), false);
    sign.click();
    EXPECT_EQ(desktop.userDefaults.boolean("ChordSignEnabled"), true);
    EXPECT_EQ(model.options(), core::FeatureOptions());
}

TEST_F(SettingsWindowTest, AnApplicationGetsASourceThatItAlwaysHas) {
    desktop.withInputSources({fakes::hebrew(), fakes::english(), fakes::arabic()});
    desktop.applicationCatalog.applications = {{"org.example.terminal", "Terminal", true}};
    const auto stored = [&] { return core::ApplicationSourceOptions::load(desktop.userDefaults); };
    present(SettingsPage::shortcuts);
    auto& add = find<QPushButton>("addFixedSource");
    EXPECT_FALSE(add.isVisible());
    auto& enabled = switchNamed("Input source for each application");
    EXPECT_FALSE(enabled.isChecked());
    enabled.click();
    settle();
    EXPECT_TRUE(stored().enabled);
    ASSERT_TRUE(add.isVisible());
    EXPECT_TRUE(shows("No applications"));
    add.click();
    settle();
    auto* menu = window().findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().front()->text(), "Terminal");
    menu->actions().front()->trigger();
    menu->close();
    settle();
    using Fixed = std::map<std::string, std::string>;
    EXPECT_EQ(stored().fixed, (Fixed{{"org.example.terminal", fakes::english().id}}));
    EXPECT_TRUE(shows("Terminal"));
    auto& source = find<QComboBox>("fixedSource");
    EXPECT_EQ(source.currentText().toStdString(), fakes::english().localizedName);
    EXPECT_EQ(source.accessibleName(), "Input source in Terminal");
    source.setCurrentIndex(2);
    emit source.activated(2);
    settle();
    EXPECT_EQ(stored().fixed, (Fixed{{"org.example.terminal", fakes::arabic().id}}));
    find<QPushButton>("removeFixedSource").click();
    settle();
    EXPECT_TRUE(stored().fixed.empty());
    EXPECT_TRUE(stored().enabled);
}

} // namespace
} // namespace quillane

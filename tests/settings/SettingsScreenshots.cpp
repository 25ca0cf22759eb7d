// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "core/keyboard/ApplicationSources.hpp"
#include "settings/SettingsPageView.hpp"
#include "settings/SettingsView.hpp"
#include "support/Popups.hpp"

#ifdef QUILLANE_LINE_ART
#include "platform/linux/shell/LineArtSymbols.hpp"
#endif

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFontDatabase>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTextEdit>

#include <array>
#include <utility>

namespace quillane {
namespace {

using core::AppLanguage;
using core::SettingsPage;

/// Pictures of every page to look at, and what can be measured on them.
class SettingsScreenshotsTest : public SettingsTest {
protected:
    SettingsScreenshotsTest() {
        useReadableFont(1);
#ifdef QUILLANE_LINE_ART
        shownOn = core::Desktop::linuxDesktop;
        desktop.permissions.grantOnRequest();
        desktop.loginItem.settings = false;
#endif
        model.optionsChanged = [this] { model.refreshKeepAwake(); };
        auto options = model.options();
        options.keepAwake = true;
        model.setOptions(options);
        auto runtime = model.runtime();
        runtime.accessibilityGranted = runtime.inputMonitoringGranted = true;
        runtime.monitorRunning = runtime.keyboardEventsObserved = true;
        runtime.inputName = "Hebrew";
        runtime.inputIsRTL = true;
        runtime.runtimeStatus = core::texts::shortcutsActive;
        model.setRuntime(runtime);
        model.setLastAction(core::texts::keyboardLanguage("Hebrew"));
        clipboardOptions.enabled = true;
        clipboardOptions.ignoredApps = {"com.example.mail"};
        desktop.withInputSources({fakes::english(), fakes::hebrew(), fakes::arabic()});
        core::ApplicationSourceOptions{.enabled = true, .fixed = {{"com.example.mail", fakes::hebrew().id}}}.save(
            desktop.userDefaults);
        desktop.withPermissions({core::MacPermission::inputMonitoring});
        permissions.refresh();
        desktop.updater.finish({785'000'000});
    }

    ~SettingsScreenshotsTest() override {
        useDark(false);
    }

    static void useReadableFont(double scale) {
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
        font.setPointSizeF(10 * scale);
        QApplication::setFont(font);
    }

    [[nodiscard]] SettingsServices services() override {
        auto made = SettingsTest::services();
#ifdef QUILLANE_LINE_ART
        made.symbol = [](const std::string& name, const QColor& color) { return symbolIcon(name, color); };
        made.applicationIcon = applicationIcon();
#endif
        return made;
    }

    void showDamage() {
        historyIsUnsaved = historyIsUnread = true;
        setAside = {{"one", {785'592'000}}, {"two", {785'500'000}}};
        lastRecovery = {12, 13};
        auto runtime = model.runtime();
        runtime.statusItemShown = false;
        model.setRuntime(runtime);
    }

    /// Tall enough for the whole page, as far as a screen may reach.
    void fit() {
        const auto& page = window().view().currentPage();
        const auto* scroll = qobject_cast<QScrollArea*>(page.parentWidget()->parentWidget());
        const int missing = page.height() - scroll->viewport()->height();
        if (missing > 0) {
            window().resize(window().width(), window().height() + missing);
            settle();
        }
    }

    void expectNothingCut() {
        for (const auto* label : window().findChildren<QLabel*>()) {
            if (!label->isVisible() || label->text().isEmpty()) {
                continue;
            }
            const int needed = label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
            EXPECT_GE(label->height(), needed) << label->text().toStdString();
            EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
                << label->text().toStdString();
        }
        for (const auto* button : window().findChildren<QAbstractButton*>()) {
            if (button->isVisible()) {
                EXPECT_GE(button->width(), button->minimumSizeHint().width()) << button->text().toStdString();
                EXPECT_GE(button->height(), button->minimumSizeHint().height()) << button->text().toStdString();
            }
        }
    }
};

TEST_F(SettingsScreenshotsTest, OfAllPagesInAllLanguagesLightAndDark) {
    constexpr std::array names{"general", "shortcuts", "history", "permissions", "testing", "updates"};
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    for (const bool dark : {false, true}) {
        useDark(dark);
        for (const auto language : core::allLanguages) {
            preferences.choose(language);
            for (const auto page : core::allSettingsPages) {
                window().resize(760, 780);
                present(page);
                const auto name = QStringLiteral("settings-%1-%2-%3.png")
                                      .arg(QLatin1String(names.at(static_cast<std::size_t>(page))),
                                           QLatin1String(std::string(core::languageID(language)).c_str()),
                                           dark ? QStringLiteral("dark") : QStringLiteral("light"));
                fit();
                fit();
                expectNothingCut();
                const auto picture = window().grab();
                ASSERT_TRUE(picture.save(folder.filePath(name)));
                // Every page has more on it than its background.
                const auto image = picture.toImage();
                const auto background = image.pixelColor(3, image.height() - 3);
                int drawn = 0;
                for (int y = 170; y < image.height(); y += 3) {
                    for (int x = 0; x < image.width(); x += 3) {
                        drawn += image.pixelColor(x, y) != background ? 1 : 0;
                    }
                }
                EXPECT_GT(drawn, 1000) << name.toStdString();
            }
        }
    }
}

TEST_F(SettingsScreenshotsTest, OfAHistoryThatCouldNotBeRead) {
    showDamage();
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        window().resize(760, 780);
        present(SettingsPage::clipboard);
        fit();
        fit();
        expectNothingCut();
        ASSERT_TRUE(window().grab().save(
            QDir(QStringLiteral(QUILLANE_SCREENSHOTS))
                .filePath(QStringLiteral("settings-history-damaged-%1.png")
                              .arg(QLatin1String(std::string(core::languageID(language)).c_str())))));
    }
}

TEST_F(SettingsScreenshotsTest, DropDownListsShowEveryRow) {
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    for (const double scale : {1.0, 1.5}) {
        for (const auto language : core::allLanguages) {
            closeForever();
            useReadableFont(scale);
            preferences.choose(language);
            int lists = 0;
            for (const auto page : core::allSettingsPages) {
                present(page);
                lists += fakes::openDropDownLists(window(), [&](const QComboBox& box) {
                    EXPECT_TRUE(fakes::showsEveryRow(box));
                    const auto name = QStringLiteral("settings-list-%1-%2.png")
                                          .arg(box.objectName(), QLatin1String(core::languageID(language).data()));
                    EXPECT_TRUE(box.view()->window()->grab().save(folder.filePath(name)));
                });
            }
            EXPECT_GE(lists, 8); // the language on every page, where the panel opens, and the application to test
        }
    }
}

TEST_F(SettingsScreenshotsTest, MenusAndQuestionsOfTheHistoryPage) {
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    setAside = {{"aside", {785'592'000}}};
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        present(SettingsPage::clipboard);
        const auto save = [&](QWidget& widget, const char* what) {
            const auto name = QStringLiteral("settings-%1-%2.png")
                                  .arg(QLatin1String(what), QLatin1String(core::languageID(language).data()));
            EXPECT_TRUE(widget.grab().save(folder.filePath(name)));
        };
        find<QPushButton>("addApplication").click();
        settle();
        auto* menu = window().findChild<QMenu*>();
        ASSERT_NE(menu, nullptr);
        save(*menu, "applications");
        menu->close();
        for (const auto& [button, picture] :
             {std::pair("clear", "question"), std::pair("clearUnpinned", "question-unpinned"),
              std::pair("recover", "question-recover")}) {
            find<QPushButton>(button).click();
            settle();
            auto* question = window().findChild<QMessageBox*>();
            ASSERT_NE(question, nullptr);
            save(*question, picture);
            question->reject();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        present(SettingsPage::testing);
        const std::unique_ptr<QMenu> fields(find<QTextEdit>("box").createStandardContextMenu());
        fields->popup(window().pos());
        save(*fields, "text-menu");
        fields->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(SettingsScreenshotsTest, TextThatGrowsByHalfIsNotCut) {
    showDamage();
    for (const auto language : core::allLanguages) {
        closeForever();
        useReadableFont(1.5);
        preferences.choose(language);
        for (const auto page : core::allSettingsPages) {
            present(page);
            window().view().refresh();
            settle();
            expectNothingCut();
            const auto& shown = window().view().currentPage();
            EXPECT_LE(shown.minimumSizeHint().width(), shown.width()) << static_cast<int>(page);
        }
    }
}

} // namespace
} // namespace quillane

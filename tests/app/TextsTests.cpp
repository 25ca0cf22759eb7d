// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Texts.hpp"
#include "fileshare/FileShareWindow.hpp"
#include "support/KnownTexts.hpp"

#include <QAbstractButton>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <filesystem>
#include <tuple>
#include <vector>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::AppLanguage;
using core::Desktop;

/// Menus, and the windows other than the settings: everything that the running agent can show in one language.
class TextsTest : public AppDelegateTest, public ::testing::WithParamInterface<std::tuple<AppLanguage, Desktop>> {
protected:
    TextsTest() {
        shownOn = std::get<Desktop>(GetParam());
        desktop.loginItem.settings = shownOn == Desktop::macOS;
        desktop.areaCapture.setMeans(shownOn == Desktop::macOS ? AreaCapture::Means::systemShortcut
                                                               : AreaCapture::Means::ownSelection);
        for (const auto* data :
             {"Quillane 1.2", "report.txt", "files.example:8443", "files.example", "English", "עברית", "العربية"}) {
            known.allow(QString::fromUtf8(data));
        }
        known.allow(QString::fromStdString(core::FileShareServer::standard().host()));
    }

    AppDelegate& launchInLanguage() {
        core::FileShareServer::validating("https://files.example:8443/up")->save(defaults);
        auto& made = launch();
        preferences->choose(language());
        return made;
    }

    static AppLanguage language() { return std::get<AppLanguage>(GetParam()); }

    static std::vector<QMessageBox*> messageBoxes() {
        std::vector<QMessageBox*> boxes;
        for (auto* widget : QApplication::allWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget); box != nullptr && box->isVisible()) {
                boxes.push_back(box);
            }
        }
        return boxes;
    }

    /// Everything on a message box, in the language of now and in each of the others.
    void checkFollowingTheLanguage(QMessageBox& box) {
        for (const auto other : core::allLanguages) {
            preferences->choose(other);
            fakes::KnownTexts texts(other, shownOn);
            texts.checkWindow(box);
            EXPECT_GE(texts.checked(), 5);
            EXPECT_EQ(box.layoutDirection(), core::isRTL(other) ? Qt::RightToLeft : Qt::LeftToRight);
        }
        preferences->choose(language());
        known.checkWindow(box);
    }

    void checkMenus() {
        for (const auto& row : desktop.statusItem.rows()) {
            known.expect(QString::fromStdString(row.title), "status menu");
        }
        known.expect(QString::fromStdString(desktop.statusItem.accessibilityLabel()), "status item");
        for (const auto& menu : desktop.applicationMenu.menus()) {
            known.expect(QString::fromStdString(menu.title), "application menu");
            for (const auto& [row, standard] : menu.rows) {
                known.expect(QString::fromStdString(row.title), "application menu");
            }
        }
    }

    void checkWindows() {
        int visible = 0;
        for (auto* window : QApplication::topLevelWidgets()) {
            if (window->isVisible()) {
                ++visible;
                known.checkWindowAndMenus(*window);
            }
        }
        EXPECT_GT(visible, 0);
    }

    fakes::KnownTexts known{language(), std::get<Desktop>(GetParam())};
};

TEST_P(TextsTest, OfTheMenus) {
    launchInLanguage();
    checkMenus();
    auto options = model->options();
    options.paused = true;
    model->setOptions(options);
    checkMenus();
    options.paused = false;
    options.keepAwake = true;
    model->setOptions(options);
    desktop.withPermissions({});
    desktop.queue.advance(2s);
    checkMenus();
    desktop.workspace.open(std::string(legacyBundleID));
    desktop.queue.advance(2s);
    checkMenus();
    EXPECT_GT(known.checked(), 100);
}

TEST_P(TextsTest, OfTheShareWindow) {
    auto& agent = launchInLanguage();
    known.allowPattern(QStringLiteral("https://files\\.example.*"));
    known.allowPattern(QStringLiteral("/.*report\\.txt"));
    known.allowPattern(QStringLiteral("\\d+%"));
    const auto file = files.url("report.txt", std::string(1000, 'x')).absoluteString();
    const auto share = [&] {
        EXPECT_TRUE(agent.handleControlRequest({"share", {file}}).ok);
        QApplication::processEvents();
        checkWindows();
    };
    const auto closeAll = [] {
        for (auto* window : QApplication::topLevelWidgets()) {
            window->close();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    share();
    desktop.urlSessions.last().receive("https://files.example:8443/up/abc/report.txt\n");
    desktop.urlSessions.last().complete(core::UrlResponse{201});
    QApplication::processEvents();
    checkWindows();
    closeAll();
    for (const int status : {403, 404, 413, 500, 507}) {
        share();
        desktop.urlSessions.last().complete(core::UrlResponse{status});
        QApplication::processEvents();
        checkWindows();
        closeAll();
    }
    EXPECT_GT(known.checked(), 200);
}

TEST_P(TextsTest, OfTheMessagesThatRefuseFiles) {
    auto& agent = launchInLanguage();
    known.allowPattern(QStringLiteral("/.*report\\.txt"));
    known.allowPattern(QStringLiteral("\\d+%"));
    EXPECT_FALSE(agent.handleControlRequest({"share", {"file:///a", "file:///b"}}).ok);
    EXPECT_TRUE(agent.handleControlRequest({"share", {files.url("report.txt", "x").absoluteString()}}).ok);
    QApplication::processEvents();
    QWidget* window = nullptr;
    for (auto* widget : QApplication::topLevelWidgets()) {
        window = qobject_cast<FileShareWindow*>(widget) != nullptr ? widget : window;
    }
    ASSERT_NE(window, nullptr);
    QMimeData data;
    data.setUrls({QUrl("file:///a"), QUrl("file:///b")});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter); // Qt drops only on an entered widget
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &drop);
    QApplication::processEvents();
    const auto boxes = messageBoxes();
    EXPECT_EQ(boxes.size(), 2U);
    for (auto* box : boxes) {
        checkFollowingTheLanguage(*box);
        box->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_P(TextsTest, OfTheQuestionsOfTheSettings) {
    core::ClipboardOptions options;
    options.enabled = true;
    defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
    std::filesystem::create_directories(files.path() / "Quillane" / "ClipboardHistory");
    static_cast<void>(files.file("Quillane/ClipboardHistory/index", "damaged"));
    launchInLanguage();
    for (int step = 0; step < 2; ++step) { // the history is read, and the one that begins is saved
        desktop.vaultQueue.wait();
        desktop.settle();
        desktop.queue.advance(1s);
    }
    desktop.vaultQueue.wait();
    desktop.settle();
    click(core::texts::settings.rendered(language()));
    settingsWindow()->present(core::SettingsPage::clipboard);
    settleWindows();
    for (const auto* name : {"clear", "clearUnpinned", "recover"}) {
        auto* button = settingsWindow()->findChild<QPushButton*>(QLatin1String(name));
        ASSERT_TRUE(button->isVisible()) << name;
        button->click();
        settleWindows();
        const auto boxes = messageBoxes();
        ASSERT_EQ(boxes.size(), 1U) << name;
        checkFollowingTheLanguage(*boxes.front());
        boxes.front()->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_P(TextsTest, OfTheQuestionForAServer) {
    launchInLanguage();
    core::FileShareServer::standard().save(defaults);
    EXPECT_TRUE(delegate->handleControlRequest({"share", {}}).ok);
    settleWindows();
    const auto boxes = messageBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    checkFollowingTheLanguage(*boxes.front());
    boxes.front()->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_P(TextsTest, OfTheCardBesideSystemSettings) {
    desktop.withPermissions({});
    launchInLanguage();
    click(core::texts::permissions.rendered(language()));
    const auto openTitle = QString::fromStdString(core::texts::openSystemSettings.on(shownOn).rendered(language()));
    const auto buttons = settingsWindow()->findChildren<QPushButton*>();
    const auto open = std::ranges::find(buttons, openTitle, &QPushButton::text);
    ASSERT_NE(open, buttons.end());
    (*open)->click();
    settingsWindow()->close();
    desktop.withFrontApplication("com.apple.systempreferences");
    desktop.queue.advance(500ms);
    checkWindows();
    desktop.permissions.grant(core::MacPermission::inputMonitoring);
    desktop.permissions.grant(core::MacPermission::accessibility);
    desktop.queue.advance(500ms);
    checkWindows();
    EXPECT_GT(known.checked(), 20);
}

INSTANTIATE_TEST_SUITE_P(In, TextsTest,
                         ::testing::Combine(::testing::ValuesIn(core::allLanguages),
                                            ::testing::Values(Desktop::macOS, Desktop::linuxDesktop)),
                         [](const auto& parameter) {
                             return std::string(core::languageID(std::get<AppLanguage>(parameter.param))) +
                                    (std::get<Desktop>(parameter.param) == Desktop::macOS ? "_macOS" : "_Linux");
                         });

} // namespace
} // namespace quillane

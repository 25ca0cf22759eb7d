// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Texts.hpp"
#include "support/DesktopWords.hpp"

#include <QComboBox>
#include <QMenu>

#include <set>
#include <tuple>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::AppLanguage;
using core::Desktop;
namespace texts = core::texts;

/// Everything that the running agent shows names the keys and places of its desktop, and of no other.
class DesktopTextsTest : public AppDelegateTest, public testing::WithParamInterface<std::tuple<AppLanguage, Desktop>> {
protected:
    DesktopTextsTest() {
        shownOn = std::get<Desktop>(GetParam());
        if (shownOn == Desktop::linuxDesktop) {
            desktop.permissions.grantOnRequest();
            desktop.loginItem.settings = false;
            desktop.areaCapture.setMeans(AreaCapture::Means::ownSelection);
        }
        core::ClipboardOptions options;
        options.enabled = true;
        defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
        desktop.withFrontApplication("com.example.editor", "Editor");
    }

    void start() {
        launch();
        preferences->choose(std::get<AppLanguage>(GetParam()));
        settle();
    }

    void settle() {
        for (int round = 0; round < 3; ++round) {
            desktop.settle();
            desktop.vaultQueue.wait();
            QApplication::processEvents();
        }
    }

    void expectOwn(const std::string& text, const std::string& where) {
        checked += text.empty() ? 0 : 1;
        EXPECT_EQ(fakes::wordOfAnotherDesktop(text, shownOn), std::nullopt) << where << ": " << text;
    }

    void checkMenus() {
        for (const auto& row : desktop.statusItem.rows()) {
            expectOwn(row.title, "status menu");
            expectOwn(row.toolTip, "status menu, tool tip");
        }
        expectOwn(desktop.statusItem.accessibilityLabel(), "status item");
        for (const auto& notice : desktop.statusItem.notices()) {
            expectOwn(notice.text, "notice");
        }
        for (const auto& menu : desktop.applicationMenu.menus()) {
            for (const auto& [row, standard] : menu.rows) {
                expectOwn(row.title, "application menu");
            }
        }
    }

    void check(const QWidget& widget) {
        const auto where = std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
        for (const auto* property : {"windowTitle", "text", "title", "toolTip", "placeholderText", "accessibleName",
                                     "accessibleDescription"}) {
            expectOwn(widget.property(property).toString().toStdString(), where);
        }
        for (const auto* action : widget.actions()) {
            expectOwn(action->text().toStdString(), where);
        }
        if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
            for (int item = 0; item < box->count(); ++item) {
                expectOwn(box->itemText(item).toStdString(), where);
            }
        }
    }

    /// Every visible widget.
    void checkWindows() {
        settle();
        int visible = 0;
        for (const auto* widget : QApplication::allWidgets()) {
            if (widget->isVisible()) {
                ++visible;
                check(*widget);
            }
        }
        EXPECT_GT(visible, 0);
    }

    static void closeWindows() {
        for (auto* window : QApplication::topLevelWidgets()) {
            window->close();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    int checked = 0;
};

TEST_P(DesktopTextsTest, OfTheMenus) {
    start();
    checkMenus();
    desktop.switchTo("com.apple.ScreenSharing");
    desktop.queue.advance(2s);
    checkMenus();
    desktop.withPermissions({});
    desktop.queue.advance(2s);
    checkMenus();
    auto options = model->options();
    options.paused = true;
    model->setOptions(options);
    checkMenus();
    EXPECT_GT(checked, 90);
}

TEST_P(DesktopTextsTest, OfTheSettings) {
    desktop.loginItem.current = LoginItemStatus::unknown;
    desktop.loginItem.statusAfterFailure = LoginItemStatus::unknown;
    desktop.loginItem.fails = true;
    desktop.hotKeys.take({9, core::flags::command | core::flags::shift});
    start();
    click(texts::settings.rendered(std::get<AppLanguage>(GetParam())));
    auto* window = settingsWindow();
    ASSERT_NE(window, nullptr);
    auto keepAwake = model->options();
    keepAwake.keepAwake = true;
    model->setOptions(keepAwake);
    for (const auto& granted :
         {std::set<core::MacPermission>{}, {core::allPermissions.begin(), core::allPermissions.end()}}) {
        desktop.withPermissions(granted);
        desktop.queue.advance(2s);
        for (const auto page : core::allSettingsPages) {
            window->present(page);
            checkWindows();
        }
    }
    EXPECT_GT(checked, 500);
}

TEST_P(DesktopTextsTest, OfWhatIsSaidInTheSettings) {
    desktop.withPermissions({});
    start();
    click(texts::quickTest.rendered(std::get<AppLanguage>(GetParam())));
    desktop.inputSources.setRefusesSelection(true);
    desktop.withPermissions({core::allPermissions.begin(), core::allPermissions.end()});
    desktop.queue.advance(2s);
    releaseLanguageChord();
    EXPECT_EQ(model->lastAction(), core::LocalizedText(texts::couldNotSwitchKeyboardLanguage.on(shownOn)));
    checkWindows();
}

TEST_P(DesktopTextsTest, OfTheShareWindow) {
    core::FileShareServer::validating("https://files.example:8443/up")->save(defaults);
    start();
    for (const auto& file : {files.url("report.txt", "x"), core::Url::fromFilePath(files.path() / "gone.txt")}) {
        EXPECT_TRUE(delegate->handleControlRequest({"share", {file.absoluteString()}}).ok);
        checkWindows();
        closeWindows();
    }
    EXPECT_GT(checked, 10);
}

TEST_P(DesktopTextsTest, OfTheClipboardHistory) {
    start();
    desktop.pasteboard.copyText("first");
    desktop.queue.advance(500ms);
    click(texts::clipboardHistory.rendered(std::get<AppLanguage>(GetParam())));
    checkWindows();
    desktop.withPermissions({});
    delegate->clipboardPanel().handle(36, 0); // Return
    ASSERT_EQ(delegate->clipboardPanel().message(),
              core::LocalizedText(texts::itemCopiedAllowAccessibility.on(shownOn)));
    checkWindows();
    for (auto* list : QApplication::topLevelWidgets()) {
        if (auto* rows = list->findChild<QWidget*>(QStringLiteral("list"))) {
            QMetaObject::invokeMethod(rows, "customContextMenuRequested", Q_ARG(QPoint, QPoint(40, 20)));
        }
    }
    settle();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    checkWindows();
    QApplication::activePopupWidget()->close();
    EXPECT_GT(checked, 30);
}

INSTANTIATE_TEST_SUITE_P(In, DesktopTextsTest,
                         testing::Combine(testing::ValuesIn(core::allLanguages),
                                          testing::Values(Desktop::macOS, Desktop::linuxDesktop)),
                         [](const auto& parameter) {
                             return std::string(core::languageID(std::get<AppLanguage>(parameter.param))) +
                                    (std::get<Desktop>(parameter.param) == Desktop::macOS ? "OnMacOS" : "OnLinux");
                         });

} // namespace
} // namespace quillane

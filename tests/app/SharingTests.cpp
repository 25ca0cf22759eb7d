// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Texts.hpp"
#include "support/TemporaryFolder.hpp"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <cstdlib>

namespace quillane {
namespace {

/// The ways in to sharing a file that the agent offers, with its windows off the screen.
class SharingTest : public AppDelegateTest {
protected:
    SharingTest() {
        defaults.setObject("FileShareServer", std::string("http://nas"));
        launch();
    }

    ~SharingTest() override { delegate.reset(); } // its windows, before the application

    [[nodiscard]] static std::vector<QWidget*> windows() {
        std::vector<QWidget*> result;
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible()) {
                result.push_back(widget);
            }
        }
        return result;
    }

    [[nodiscard]] std::string url(const std::string& name) { return files.url(name).absoluteString(); }

    ControlReply share(std::vector<std::string> urls) {
        return delegate->handleControlRequest({"share", std::move(urls)});
    }
};

TEST_F(SharingTest, TheMenuRowOpensThePanelAndTheChosenFileIsUploaded) {
    click("Quillane Share…");
    ASSERT_TRUE(desktop.filePanel.open);
    EXPECT_EQ(desktop.filePanel.open->message, "Choose a file to upload to nas");
    EXPECT_EQ(desktop.windowTraits.activations, 1);
    static_cast<void>(files.url("a.txt"));
    desktop.filePanel.confirm(files.path() / "a.txt");
    EXPECT_EQ(desktop.urlSessions.last().request->url.absoluteString(), "http://nas/a.txt");
    EXPECT_EQ(desktop.windowTraits.activations, 2);
}

TEST_F(SharingTest, AnOpenPanelFollowsTheLanguage) {
    click("Quillane Share…");
    preferences->choose(core::AppLanguage::arabic);
    ASSERT_TRUE(desktop.filePanel.open);
    EXPECT_EQ(desktop.filePanel.open->language, core::AppLanguage::arabic);
    EXPECT_EQ(desktop.filePanel.open->message,
              core::texts::chooseFileToUpload("nas").rendered(core::AppLanguage::arabic));
}

TEST_F(SharingTest, TheApplicationMenuHasItToo) {
    const auto& rows = desktop.applicationMenu.menus().front().rows;
    ASSERT_EQ(rows[1].row.title, "Quillane Share…");
    rows[1].row.action();
    EXPECT_TRUE(desktop.filePanel.open);
}

TEST_F(SharingTest, TheCommandUploadsTheFileAndItsLinkIsCopied) {
    EXPECT_EQ(share({url("שלום #1.txt")}), ControlReply{});
    EXPECT_EQ(desktop.urlSessions.last().request->url.absoluteString(),
              "http://nas/%D7%A9%D7%9C%D7%95%D7%9D%20%231.txt");
    ASSERT_EQ(windows().size(), 1U);
    desktop.urlSessions.last().receive("http://nas/abc/x\n");
    desktop.urlSessions.last().complete(core::UrlResponse{200});
    windows().front()->findChild<QPushButton*>("copyAndClose")->click();
    EXPECT_EQ(desktop.pasteboard.string(core::pasteboardTypes::string), "http://nas/abc/x");
    EXPECT_TRUE(windows().empty());
}

TEST_F(SharingTest, AnythingButOneFileIsReportedToTheCommandAndTheUser) {
    EXPECT_EQ(share({url("a.txt"), url("b.txt")}), (ControlReply{false, "Select one file to share."}));
    EXPECT_TRUE(desktop.urlSessions.transfers.empty());
    ASSERT_EQ(windows().size(), 1U);
    const auto* box = qobject_cast<QMessageBox*>(windows().front());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Select one file to share.");
    EXPECT_EQ(share({"no url"}).ok, false);
}

TEST_F(SharingTest, WithoutAServerTheUserIsLedToItsAddress) {
    core::FileShareServer::standard().save(defaults);
    EXPECT_EQ(share({url("a.txt")}), ControlReply{});
    EXPECT_TRUE(desktop.urlSessions.transfers.empty());
    ASSERT_EQ(windows().size(), 1U);
    windows().front()->findChild<QPushButton*>("chooseServer")->click();
    ASSERT_EQ(windows().size(), 2U);
    auto* settings = windows().front()->windowTitle() == "Quillane Share" ? windows().back() : windows().front();
    QApplication::processEvents();
    const auto* address = settings->findChild<QLineEdit*>("address");
    EXPECT_EQ(settings->focusWidget(), address);
    const QRect place(address->mapTo(settings, QPoint()), address->size());
    EXPECT_TRUE(settings->rect().contains(place)) << place.bottom();
    EXPECT_FALSE(address->visibleRegion().isEmpty());
}

TEST_F(SharingTest, TheCommandWithoutAFileLetsTheUserChoose) {
    EXPECT_EQ(share({}), ControlReply{});
    EXPECT_TRUE(desktop.filePanel.open);
}

TEST_F(SharingTest, TheServicesMenuSharesOneFileAndReportsAnErrorOtherwise) {
    preferences->choose(core::AppLanguage::arabic);
    EXPECT_EQ(desktop.servicesMenu.chooseShare({url("a.txt"), url("b.txt")}), "حدّد ملفًا واحدًا لمشاركته.");
    EXPECT_TRUE(windows().empty());
    EXPECT_EQ(desktop.servicesMenu.chooseShare({url("a.txt")}), std::nullopt);
    EXPECT_EQ(windows().size(), 1U);
}

TEST_F(SharingTest, PausingCancelsUploadsAndStillAllowsNewOnes) {
    EXPECT_TRUE(share({url("a.txt")}).ok);
    click("Pause all");
    EXPECT_TRUE(desktop.urlSessions.last().destroyed);
    EXPECT_TRUE(share({url("a.txt")}).ok);
    EXPECT_FALSE(desktop.urlSessions.last().destroyed);
    click("Temporary English with Shift");
    EXPECT_FALSE(desktop.urlSessions.last().destroyed);
}

TEST_F(SharingTest, QuittingCancelsUploadsAndEndsTheService) {
    EXPECT_TRUE(share({url("a.txt")}).ok);
    delegate->applicationWillTerminate();
    EXPECT_TRUE(desktop.urlSessions.last().destroyed);
    EXPECT_THROW(static_cast<void>(desktop.servicesMenu.chooseShare({url("a.txt")})), std::logic_error);
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/QtFilePanel.hpp"

#include "fakes/FocusableNames.hpp"
#include "fakes/TemporaryFiles.hpp"
#include "platform/FilePanelContract.hpp"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

namespace quillane {
namespace {

class QtFilePanelDriver {
private:
    bool offscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QApplication application_{argc_, &argv_};

public:
    FilePanel& panel() { return panel_; }

    /// The dialog that is open; null without one.
    [[nodiscard]] static QFileDialog* dialog() {
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<QFileDialog*>(widget); found != nullptr && found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }

    [[nodiscard]] static bool isOpen() { return dialog() != nullptr; }

    [[nodiscard]] std::filesystem::path file() const { return file_; }

    static void confirm(const std::filesystem::path& path) {
        auto* open = dialog();
        open->setDirectory(QString::fromStdString(path.parent_path()));
        open->selectFile(QString::fromStdString(path));
        QMetaObject::invokeMethod(open, "accept");
    }

    static void cancel() { QMetaObject::invokeMethod(dialog(), "reject"); }

    fakes::TemporaryFiles files;

private:
    std::filesystem::path file_ = files.file("קובץ #1.txt");
    QtFilePanel panel_;
};

class QtFilePanelTests : public ::testing::Test {
protected:
    void choose() {
        driver.panel().chooseFile(
            {.title = "Title",
             .message = "To <b>nas</b>",
             .prompt = "Upload",
             .direction = LayoutDirection::rightToLeft},
            [](const std::filesystem::path&) { FAIL() << "nothing was confirmed"; },
            [this](const std::vector<std::string>& urls) {
                dropped.push_back(urls);
                return answer;
            });
    }

    static void drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(QtFilePanelDriver::dialog(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(QtFilePanelDriver::dialog(), &event);
    }

    QtFilePanelDriver driver;
    std::vector<std::vector<std::string>> dropped;
    std::optional<std::string> answer;
};

TEST_F(QtFilePanelTests, ShowsItsTextsAndTakesNoFolder) {
    choose();
    const auto* dialog = QtFilePanelDriver::dialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Title");
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), "Upload");
    EXPECT_EQ(dialog->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ReadOnly));
    const auto labels = dialog->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
        return label->text() == "To <b>nas</b>" && label->textFormat() == Qt::PlainText;
    }));
    QtFilePanelDriver::cancel();
}

TEST_F(QtFilePanelTests, EverythingThatTakesTheFocusHasAName) {
    choose();
    QCoreApplication::processEvents();
    fakes::expectNamedFocusables(*QtFilePanelDriver::dialog());
    QtFilePanelDriver::cancel();
}

TEST_F(QtFilePanelTests, WhatIsDroppedIsHandedOnAndClosesThePanelWhenItIsTaken) {
    choose();
    drop({QUrl::fromLocalFile(QString::fromStdString(driver.file()))});
    EXPECT_EQ(dropped,
              (std::vector<std::vector<std::string>>{{core::Url::fromFilePath(driver.file()).absoluteString()}}));
    EXPECT_FALSE(QtFilePanelDriver::isOpen());
}

TEST_F(QtFilePanelTests, ARefusedDropIsExplainedAndThePanelStays) {
    answer = "Select one file to share.";
    choose();
    drop({QUrl("file:///a"), QUrl("file:///b")});
    EXPECT_TRUE(QtFilePanelDriver::isOpen());
    const auto* box = QtFilePanelDriver::dialog()->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Select one file to share.");
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, FilePanelContract, QtFilePanelDriver);

} // namespace testing
} // namespace quillane

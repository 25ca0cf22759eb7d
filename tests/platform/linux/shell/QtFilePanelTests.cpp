// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/QtFilePanel.hpp"

#include "contracts/FilePanelContract.hpp"
#include "core/localization/Texts.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "support/FocusableNames.hpp"
#include "support/KnownTexts.hpp"
#include "support/TemporaryFolder.hpp"
#include "views/InterfaceLanguage.hpp"

#include <QApplication>
#include <QCompleter>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>

namespace quillane {
namespace {

class QtFilePanelDriver {
public:
    live::TemporaryFolder files;

private:
    bool offscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
    bool ownSettings_ = qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(files.path() / "config")); // Qt's places
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

private:
    std::filesystem::path file_ = files.file("קובץ #1.txt");
    QtFilePanel panel_;
};

class QtFilePanelTest : public ::testing::Test {
protected:
    void choose() {
        driver.panel().chooseFile(
            {.title = "Title", .message = "To <b>nas</b>", .prompt = "Upload", .language = core::AppLanguage::hebrew},
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
    std::optional<core::LocalizedText> answer;
};

TEST_F(QtFilePanelTest, ShowsItsTextsAndTakesNoFolder) {
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

TEST_F(QtFilePanelTest, EverythingThatTakesTheFocusHasAName) {
    choose();
    QCoreApplication::processEvents();
    fakes::expectNamedFocusables(*QtFilePanelDriver::dialog());
    QtFilePanelDriver::cancel();
}

TEST_F(QtFilePanelTest, ADropIsPassedOnAndClosesThePanelIfAccepted) {
    choose();
    drop({QUrl::fromLocalFile(QString::fromStdString(driver.file()))});
    EXPECT_EQ(dropped,
              (std::vector<std::vector<std::string>>{{core::Url::fromFilePath(driver.file()).absoluteString()}}));
    EXPECT_FALSE(QtFilePanelDriver::isOpen());
}

TEST_F(QtFilePanelTest, ARefusedDropIsExplainedAndThePanelStays) {
    answer = core::texts::selectOneFile;
    choose();
    drop({QUrl("file:///a"), QUrl("file:///b")});
    EXPECT_TRUE(QtFilePanelDriver::isOpen());
    const auto* box = QtFilePanelDriver::dialog()->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "יש לבחור קובץ אחד לשיתוף."); // the language of the panel
}

/// The dialog with Qt's texts from the program's table, as in the program.
class QtFilePanelTextsTest : public QtFilePanelTest, public ::testing::WithParamInterface<core::AppLanguage> {
protected:
    QtFilePanelTextsTest() {
        for (const auto* name : {"picture.png", ".profile", "README", "report (1).pdf"}) {
            static_cast<void>(driver.files.file(name));
        }
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
        font.setPointSizeF(10);
        QApplication::setFont(font);
    }

    static FilePanel::Texts texts(core::AppLanguage language) {
        return {.title = core::texts::shareWindowTitle.rendered(language),
                .message = core::texts::chooseFileToUpload("files.example").rendered(language),
                .prompt = core::texts::uploadFile.rendered(language),
                .language = language};
    }

    QFileDialog& open(core::AppLanguage language) {
        preferences.choose(language);
        driver.panel().chooseFile(
            texts(language), [](const std::filesystem::path&) {},
            [this](const std::vector<std::string>&) { return answer; });
        auto& dialog = *QtFilePanelDriver::dialog();
        dialog.setDirectory(QString::fromStdString(driver.files.path()));
        dialog.setViewMode(QFileDialog::Detail);
        EXPECT_TRUE(QTest::qWaitFor([&] { return table().model()->rowCount(table().rootIndex()) >= 4; }));
        return dialog;
    }

    static QTreeView& table() { return *QtFilePanelDriver::dialog()->findChild<QTreeView*>("treeView"); }

    static QString rendered(const core::LocalizedText& text, core::AppLanguage language) {
        return QString::fromStdString(text.rendered(language));
    }

    /// The texts in the row of the file, by column.
    static QStringList row(const QString& name) {
        const auto root = table().rootIndex();
        for (int row = 0; row < table().model()->rowCount(root); ++row) {
            QStringList cells;
            for (int column = 0; column < 4; ++column) {
                cells << table().model()->index(row, column, root).data().toString();
            }
            if (cells.front() == name) {
                return cells;
            }
        }
        return {};
    }

    fakes::FakeUserDefaults defaults;
    core::AppPreferences preferences{defaults};
    InterfaceLanguage interface { preferences };
};

TEST_P(QtFilePanelTextsTest, NothingIsInAnotherLanguage) {
    const auto language = GetParam();
    fakes::KnownTexts known(language);
    auto& dialog = open(language);
    known.allowPattern("/.*"); // paths
    known.allow(QString::fromStdString(driver.files.path().filename()));
    const auto text = [&](const core::LocalizedText& row) { return rendered(row, language); };
    known.allowPattern(text(core::texts::qtShow) + " (" + text(core::texts::qtSize) + "|" + text(core::texts::qtType) +
                       "|" + text(core::texts::qtDateModified) + ")");
    dialog.setHistory({QStringLiteral("/usr"), QStringLiteral("/usr/share")}); // which the list of places ends with
    for (const auto mode : {QFileDialog::List, QFileDialog::Detail}) {
        dialog.setViewMode(mode);
        QApplication::processEvents();
        known.checkWindowAndMenus(dialog);
    }
    const int lists = fakes::openDropDownLists(dialog, [&](const QComboBox& box) {
        EXPECT_TRUE(fakes::showsEveryRow(box));
        known.check(box);
    });
    EXPECT_EQ(lists, 2);
    EXPECT_TRUE(
        dialog.grab().save(QDir(QStringLiteral(QUILLANE_SCREENSHOTS))
                               .filePath("file-chooser-" + QLatin1String(core::languageID(language).data()) + ".png")));
    EXPECT_GT(known.checked(), 150);
    QtFilePanelDriver::cancel();
}

TEST_P(QtFilePanelTextsTest, SizesKindsAndDatesAreInTheLanguage) {
    const auto language = GetParam();
    open(language);
    const auto picture = row("picture.png");
    ASSERT_EQ(picture.size(), 4);
    EXPECT_EQ(picture[1], rendered(core::texts::sizeInBytes("7"), language));
    EXPECT_EQ(picture[2], rendered(core::texts::fileOfType("PNG"), language));
    EXPECT_TRUE(picture[3].contains(QString::number(QDate::currentDate().year()))) << picture[3].toStdString();
    EXPECT_EQ(row("README")[2], rendered(core::texts::fileItem, language));
    QtFilePanelDriver::cancel();
}

TEST_P(QtFilePanelTextsTest, AMissingFileIsReportedInTheLanguage) {
    const auto language = GetParam();
    auto& dialog = open(language);
    fakes::KnownTexts known(language);
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText("nowhere.txt");
    bool seen = false;
    QTimer watch; // the box runs an event loop of its own
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (auto* box = dialog.findChild<QMessageBox*>(); box != nullptr && box->isVisible()) {
            seen = true;
            if (language != core::AppLanguage::english) { // the table has Qt's English on one line
                EXPECT_EQ(box->text(), rendered(core::texts::qtFileNotFound("nowhere.txt"), language));
            }
            known.expect(box->button(QMessageBox::Ok)->text().remove('&'), "message box");
            box->reject();
        }
    });
    watch.start();
    QMetaObject::invokeMethod(&dialog, "accept");
    EXPECT_TRUE(seen);
    QtFilePanelDriver::cancel();
}

TEST_P(QtFilePanelTextsTest, PathsAreReadFromTheirRoot) {
    auto& dialog = open(GetParam());
    auto& place = *dialog.findChild<QComboBox*>("lookInCombo");
    EXPECT_EQ(place.layoutDirection(), Qt::LeftToRight);
    const auto picture = [&] {
        place.resize(400, 30);
        return place.grab().toImage();
    };
    const auto drawn = picture();
    QApplication::setLayoutDirection(Qt::LeftToRight);
    EXPECT_EQ(drawn, picture());
    EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->completer()->popup()->layoutDirection(), Qt::LeftToRight);
    QtFilePanelDriver::cancel();
}

TEST_P(QtFilePanelTextsTest, AnotherLanguageIsFollowedWhileItIsOpen) {
    auto& dialog =
        open(GetParam() == core::AppLanguage::hebrew ? core::AppLanguage::arabic : core::AppLanguage::hebrew);
    preferences.choose(GetParam());
    driver.panel().setTexts(texts(GetParam()));
    QApplication::processEvents();
    fakes::KnownTexts known(GetParam());
    known.allowPattern("/.*");
    known.allow(QString::fromStdString(driver.files.path().filename()));
    known.checkWindow(dialog);
    EXPECT_EQ(dialog.labelText(QFileDialog::Reject), rendered(core::texts::cancel, GetParam()));
    EXPECT_EQ(dialog.layoutDirection(), core::isRTL(GetParam()) ? Qt::RightToLeft : Qt::LeftToRight);
    EXPECT_EQ(row("README")[2], rendered(core::texts::fileItem, GetParam()));
    QtFilePanelDriver::cancel();
}

TEST_P(QtFilePanelTextsTest, ARefusedDropHasAButtonInTheLanguage) {
    answer = core::texts::selectOneFile;
    open(GetParam());
    drop({QUrl("file:///a"), QUrl("file:///b")});
    auto* box = QtFilePanelDriver::dialog()->findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    fakes::KnownTexts(GetParam()).checkWindow(*box);
    EXPECT_EQ(box->button(QMessageBox::Ok)->text(), rendered(core::texts::qtOK, GetParam()));
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        driver.panel().setTexts(texts(language));
        fakes::KnownTexts(language).checkWindow(*box);
        EXPECT_EQ(box->text(), rendered(core::texts::selectOneFile, language));
    }
}

INSTANTIATE_TEST_SUITE_P(In, QtFilePanelTextsTest, ::testing::ValuesIn(core::allLanguages),
                         [](const auto& parameter) { return std::string(core::languageID(parameter.param)); });

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, FilePanelContract, QtFilePanelDriver);

} // namespace testing
} // namespace quillane

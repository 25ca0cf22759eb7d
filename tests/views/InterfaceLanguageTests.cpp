// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/InterfaceLanguage.hpp"

#include "core/localization/Texts.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "support/KnownTexts.hpp"
#include "support/OffscreenApplication.hpp"
#include "views/MessageBox.hpp"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace quillane {
namespace {

namespace texts = core::texts;
using core::AppLanguage;

class InterfaceLanguageTest : public testing::Test {
protected:
    [[nodiscard]] static QString rendered(const core::LocalizedText& text, AppLanguage language) {
        return QString::fromStdString(text.rendered(language));
    }

    static QString translated(const char* context, const char* source) {
        return QCoreApplication::translate(context, source);
    }

private:
    fakes::OffscreenApplication application_;
    fakes::FakeUserDefaults defaults_;

protected:
    core::AppPreferences preferences{defaults_};
    std::optional<InterfaceLanguage> interface { preferences };
};

class InterfaceLanguageInTest : public InterfaceLanguageTest, public testing::WithParamInterface<AppLanguage> {};

TEST_P(InterfaceLanguageInTest, ContextMenusOfTextFieldsComeFromTheTable) {
    preferences.choose(GetParam());
    fakes::KnownTexts known(GetParam());
    QLineEdit line;
    const std::unique_ptr<QMenu> lineMenu(line.createStandardContextMenu());
    known.checkMenu(*lineMenu);
    QTextEdit text;
    const std::unique_ptr<QMenu> textMenu(text.createStandardContextMenu());
    known.checkMenu(*textMenu);
    EXPECT_GE(known.checked(), 14);
}

TEST_P(InterfaceLanguageInTest, EveryMenuIsLaidOutInItsDirection) {
    preferences.choose(GetParam());
    QWidget window;
    const QMenu menu(&window);
    EXPECT_EQ(menu.layoutDirection(), core::isRTL(GetParam()) ? Qt::RightToLeft : Qt::LeftToRight);
}

INSTANTIATE_TEST_SUITE_P(In, InterfaceLanguageInTest, testing::ValuesIn(core::allLanguages),
                         [](const auto& parameter) { return std::string(core::languageID(parameter.param)); });

TEST_F(InterfaceLanguageTest, TextsAreFoundWhateverTheirMnemonicAndCapitals) {
    preferences.choose(AppLanguage::hebrew);
    EXPECT_EQ(translated("QPlatformTheme", "OK"), rendered(texts::qtOK, AppLanguage::hebrew));
    EXPECT_EQ(translated("QGnomeTheme", "&OK"), rendered(texts::qtOK, AppLanguage::hebrew));
    EXPECT_EQ(translated("QLineEdit", "Cu&t"), rendered(texts::cut, AppLanguage::hebrew));
    EXPECT_EQ(translated("QFileDialog", "All files (*)"), rendered(texts::qtAllFiles, AppLanguage::hebrew));
}

TEST_F(InterfaceLanguageTest, PlaceholdersAndATrailingBlankStay) {
    preferences.choose(AppLanguage::arabic);
    EXPECT_EQ(
        translated("QFileDialog", "%1\nFile not found.\nPlease verify the correct file name was given.").arg("a.txt"),
        rendered(texts::qtFileNotFound("a.txt"), AppLanguage::arabic));
    EXPECT_EQ(translated("QFileDialog", "Show "), rendered(texts::qtShow, AppLanguage::arabic) + " ");
}

TEST_F(InterfaceLanguageTest, NamesOfKeysAndUnknownTextsStayAsTheyAre) {
    preferences.choose(AppLanguage::hebrew);
    EXPECT_EQ(translated("QShortcut", "Back"), "Back"); // what stands on the key
    EXPECT_EQ(translated("Anything", "A text of nobody"), "A text of nobody");
}

TEST_F(InterfaceLanguageTest, AChangeReachesOpenWindows) {
    preferences.choose(AppLanguage::english);
    QMessageBox box(QMessageBox::Information, {}, "text", QMessageBox::Ok);
    box.show();
    EXPECT_EQ(box.button(QMessageBox::Ok)->text().remove('&'), "OK");
    preferences.choose(AppLanguage::hebrew);
    QApplication::processEvents();
    EXPECT_EQ(box.button(QMessageBox::Ok)->text(), rendered(texts::qtOK, AppLanguage::hebrew));
    EXPECT_EQ(box.layoutDirection(), Qt::RightToLeft);
    preferences.choose(AppLanguage::english);
    QApplication::processEvents();
    EXPECT_EQ(box.button(QMessageBox::Ok)->text().remove('&'), "OK");
    EXPECT_EQ(box.layoutDirection(), Qt::LeftToRight);
}

TEST_F(InterfaceLanguageTest, ListenersThatCameLaterFindTheNewDirection) {
    preferences.choose(AppLanguage::english);
    auto seen = Qt::LayoutDirectionAuto;
    const auto listener = preferences.onChanged([&] { seen = QApplication::layoutDirection(); });
    preferences.choose(AppLanguage::arabic);
    EXPECT_EQ(seen, Qt::RightToLeft);
}

TEST_F(InterfaceLanguageTest, LeavesNothingBehind) {
    preferences.choose(AppLanguage::hebrew);
    interface.reset();
    EXPECT_EQ(translated("QPlatformTheme", "OK"), "OK");
    EXPECT_EQ(QApplication::layoutDirection(), Qt::LeftToRight);
}

TEST_F(InterfaceLanguageTest, AMessageBoxFollowsTheLanguage) {
    preferences.choose(AppLanguage::english);
    auto* box = new MessageBox(preferences, texts::shareWindowTitle, texts::selectOneFile);
    box->show();
    EXPECT_EQ(box->text(), "Select one file to share.");
    for (const auto language : {AppLanguage::arabic, AppLanguage::hebrew}) {
        preferences.choose(language);
        QApplication::processEvents();
        EXPECT_EQ(box->text(), rendered(texts::selectOneFile, language));
        EXPECT_EQ(box->button(QMessageBox::Ok)->text(), rendered(texts::qtOK, language));
    }
    box->button(QMessageBox::Ok)->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
    preferences.choose(AppLanguage::english);
}

} // namespace
} // namespace quillane

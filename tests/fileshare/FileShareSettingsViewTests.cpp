// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareSettingsView.hpp"

#include "fileshare/FileShareTest.hpp"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace quillane {
namespace {

class FileShareSettingsViewTest : public FileShareTest {
protected:
    [[nodiscard]] QLineEdit& address() { return *view_.findChild<QLineEdit*>("address"); }

    [[nodiscard]] QPushButton& save() { return *view_.findChild<QPushButton*>("save"); }

    [[nodiscard]] QPushButton& restore() { return *view_.findChild<QPushButton*>("restore"); }

    [[nodiscard]] QString label(const char* name) { return view_.findChild<QLabel*>(QLatin1String(name))->text(); }

    [[nodiscard]] bool isWarning() { return view_.findChild<QLabel*>("warning")->isVisibleTo(&view_); }

    [[nodiscard]] std::optional<std::string> stored() const { return defaults_.string("FileShareServer"); }

    FileShareSettingsView view_{defaults_, preferences_, core::Desktop::macOS};
};

TEST_F(FileShareSettingsViewTest, BeginsWithTheSavedServer) {
    EXPECT_EQ(address().text(), "https://files.example:8443/up");
    EXPECT_EQ(label("currentServer"), "Current server: files.example:8443/up");
    EXPECT_FALSE(save().isEnabled());
    EXPECT_FALSE(isWarning());
    EXPECT_EQ(address().accessibleName(), "File sharing server address");
    EXPECT_EQ(restore().text().toStdString(), core::FileShareServer::standard().host());
}

TEST_F(FileShareSettingsViewTest, SavesAValidAddressAndShowsItAsItIsStored) {
    address().setText("  HTTP://NAS:8080/drop/ ");
    EXPECT_TRUE(save().isEnabled());
    save().click();
    EXPECT_EQ(stored(), "http://nas:8080/drop");
    EXPECT_EQ(address().text(), "http://nas:8080/drop");
    EXPECT_EQ(label("currentServer"), "Current server: nas:8080/drop");
    EXPECT_FALSE(save().isEnabled());
}

TEST_F(FileShareSettingsViewTest, PastedAddressMayHaveDirectionMarksAndAnyScript) {
    address().setText("\u2067https://קבצים.example:8443/\u2069");
    EXPECT_FALSE(isWarning());
    save().click();
    EXPECT_EQ(stored(), "https://xn--5dbqm8ad.example:8443");
    EXPECT_EQ(address().text(), "https://xn--5dbqm8ad.example:8443");
    EXPECT_EQ(label("currentServer"), "Current server: xn--5dbqm8ad.example:8443");
}

TEST_F(FileShareSettingsViewTest, ReturnSaves) {
    address().setText("https://other.example");
    QTest::keyClick(&address(), Qt::Key_Return);
    EXPECT_EQ(stored(), "https://other.example");
}

TEST_F(FileShareSettingsViewTest, AnInvalidAddressIsExplainedAndNeverSaved) {
    address().setText("http://files.example");
    EXPECT_TRUE(isWarning());
    EXPECT_EQ(label("warning"), "Invalid address. Use an https address for any server, or an http address only for a "
                                "server on your local network.");
    QTest::keyClick(&address(), Qt::Key_Return);
    save().click();
    EXPECT_EQ(stored(), "https://files.example:8443/up");
    EXPECT_TRUE(isWarning());
    EXPECT_EQ(address().text(), "http://files.example");
    address().setText("https://files.example");
    EXPECT_FALSE(isWarning());
}

TEST_F(FileShareSettingsViewTest, ADraftThatMeansTheServerInUseIsNothingToSave) {
    address().setText(" HTTPS://Files.Example:8443/up/ ");
    EXPECT_FALSE(save().isEnabled());
}

TEST_F(FileShareSettingsViewTest, RestoringUsesTheStandardServerAndStoresNothing) {
    restore().click();
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(address().text().toStdString(), core::FileShareServer::standard().url().absoluteString());
    EXPECT_FALSE(save().isEnabled());
}

TEST_F(FileShareSettingsViewTest, TheAddressRunsLeftToRightInEveryLanguage) {
    for (const auto language : core::allLanguages) {
        preferences_.choose(language);
        EXPECT_EQ(address().layoutDirection(), Qt::LeftToRight);
        EXPECT_EQ(view_.layoutDirection(), isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight);
        view_.resize(560, view_.heightForWidth(560));
        EXPECT_TRUE(view_.grab().save(QString::fromStdString(std::string(QUILLANE_SCREENSHOTS) + "/share-settings-" +
                                                             std::string(languageID(language)) + ".png")));
    }
}

} // namespace
} // namespace quillane

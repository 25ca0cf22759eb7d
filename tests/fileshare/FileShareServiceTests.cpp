// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareService.hpp"

#include "core/localization/Texts.hpp"
#include "fileshare/FileShareTest.hpp"
#include "support/Contrast.hpp"
#include "views/InterfaceLanguage.hpp"

#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <cstdlib>

namespace quillane {
namespace {

class FileShareServiceTest : public FileShareTest {
protected:
    FileShareWindow& open() {
        service_.show(file_);
        return *service_.windows().back();
    }

    static QList<QMessageBox*> messageBoxes() {
        QList<QMessageBox*> boxes;
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget)) {
                boxes << box;
            }
        }
        return boxes;
    }

    FileShareService service_{services_};
};

TEST_F(FileShareServiceTest, NoWindowLiesOverTheTitleBarOfAnother) {
    std::vector<QRect> frames;
    for (int count = 0; count < 20; ++count) {
        const auto& window = open();
        const QRect frame(window.pos(), window.size());
        EXPECT_TRUE(window.screen()->availableGeometry().contains(frame)) << count;
        for (const auto& other : frames) {
            const auto distance = frame.topLeft() - other.topLeft();
            EXPECT_TRUE(std::abs(distance.x()) >= 16 || std::abs(distance.y()) >= 16) << count;
        }
        frames.push_back(frame);
    }
    EXPECT_EQ(frames[0].center(), open().screen()->availableGeometry().center());
    EXPECT_EQ(frames[1].topLeft(), frames[0].topLeft() + QPoint(32, 32));
}

TEST_F(FileShareServiceTest, PlaceOfAWindowThatHasClosedIsFreeAgain) {
    auto& first = open();
    const auto middle = first.pos();
    open();
    first.close();
    runDeferred();
    EXPECT_EQ(open().pos(), middle);
}

TEST_F(FileShareServiceTest, MessagesInAllLanguages) {
    QFont font(QStringLiteral("Noto Sans"));
    font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
    font.setPointSizeF(10);
    QApplication::setFont(font);
    const InterfaceLanguage interface(preferences_);
    core::FileShareServer::standard().save(defaults_);
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    const auto save = [&](const char* what) {
        for (const auto language : core::allLanguages) {
            preferences_.choose(language);
            QApplication::processEvents();
            const auto name = QStringLiteral("share-message-%1-%2.png")
                                  .arg(QLatin1String(what), QLatin1String(core::languageID(language).data()));
            EXPECT_TRUE(messageBoxes().front()->grab().save(folder.filePath(name)));
        }
        messageBoxes().front()->close();
        runDeferred();
    };
    service_.choose();
    ASSERT_EQ(messageBoxes().size(), 1);
    save("server");
    service_.showMessage(core::texts::selectOneFile);
    ASSERT_EQ(messageBoxes().size(), 1);
    save("one-file");
}

TEST_F(FileShareServiceTest, WithoutAServerChoosingAFileLeadsToTheSettings) {
    core::FileShareServer::standard().save(defaults_);
    for (const bool isWanted : {false, true}) {
        service_.choose();
        EXPECT_FALSE(panel_.open);
        const auto boxes = messageBoxes();
        ASSERT_EQ(boxes.size(), 1);
        auto* box = boxes.front();
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(box->text(), "Choose a server first");
        EXPECT_EQ(box->informativeText(), "Shared files are uploaded to a server that you choose in the settings.");
        EXPECT_EQ(box->defaultButton()->text(), "Open settings");
        EXPECT_GE(fakes::textContrast(*box->defaultButton()), 4.5);
        if (isWanted) {
            box->defaultButton()->click();
        } else {
            QTest::keyClick(box, Qt::Key_Escape);
        }
        EXPECT_EQ(serverSettingsShown_, isWanted ? 1 : 0);
        runDeferred();
    }
}

} // namespace
} // namespace quillane

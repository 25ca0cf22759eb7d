// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"

#include <QScreen>

namespace quillane {
namespace {

using namespace std::chrono_literals;

/// What the pointer and the menu do with a row.
class HistoryRowActionsTest : public HistoryPanelTest {
protected:
    void click(int row, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(list().viewport(), button, {}, list().visualRect(list().model()->index(row, 0)).center());
        settle();
    }

    /// The pointer comes to the middle of the row.
    void pointAt(int row) {
        QTest::mouseMove(list().viewport(), list().visualRect(list().model()->index(row, 0)).center());
        QApplication::processEvents();
    }

    [[nodiscard]] QWidget& preview() { return find<QWidget>("preview"); }

    static QStringList titles(const QMenu& menu) {
        QStringList all;
        for (const auto* action : menu.actions()) {
            if (!action->isSeparator()) {
                all << action->text();
            }
        }
        return all;
    }

    static void trigger(QMenu& menu, const QString& title) {
        for (auto* action : menu.actions()) {
            if (action->text() == title) {
                action->trigger();
                menu.close();
                return;
            }
        }
        FAIL() << title.toStdString();
    }
};

TEST_F(HistoryRowActionsTest, AClickPastes) {
    copyThree();
    open();
    click(2);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(pasted(), "first");
}

TEST_F(HistoryRowActionsTest, TheMenuOfATextHasEverythingAndThatOfAnImageNoPlainText) {
    copyThree();
    copyImage(png({4, 4}));
    open();
    auto& menu = openMenu(1);
    EXPECT_EQ(titles(menu),
              (QStringList{"Paste", "Paste as plain text", "Pin", "Delete from history", "History settings"}));
    EXPECT_EQ(list().currentIndex().row(), 1);
    trigger(menu, "Pin");
    settle();
    EXPECT_TRUE(manager.history().entries()[2].pinned);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(nameOfRow(0).endsWith("Pinned"));
    EXPECT_EQ(titles(openMenu(1)), (QStringList{"Paste", "Pin", "Delete from history", "History settings"}));
}

TEST_F(HistoryRowActionsTest, TheMenuDeletesPastesPlainlyAndOpensTheSettings) {
    copyThree();
    open();
    trigger(openMenu(0), "Delete from history");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(rows(), 2);
    trigger(openMenu(1), "Paste as plain text");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(pasted(), "first");
    EXPECT_FALSE(panel.isVisible());
    open();
    trigger(openMenu(0), "History settings");
    EXPECT_EQ(settingsOpened, 1);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(HistoryRowActionsTest, TheMenuKeyOpensTheMenuOfTheSelectedRow) {
    copyThree();
    open();
    press(Qt::Key_Down);
    press(Qt::Key_F10, Qt::ShiftModifier);
    trigger(find<QMenu>("rowMenu"), "Delete from history");
    settle();
    EXPECT_EQ(rows(), 2);
    EXPECT_TRUE(nameOfRow(0).contains("third"));
    EXPECT_TRUE(nameOfRow(1).contains("first"));
}

// The preview

TEST_F(HistoryRowActionsTest, ThePreviewOpensAfterThePointerHasRestedAndGoesWithAnyKey) {
    copyThree();
    open();
    pointAt(0);
    pointAt(1);
    queue.advance(699ms);
    settle();
    EXPECT_FALSE(preview().isVisible());
    queue.advance(1ms);
    settle();
    EXPECT_TRUE(preview().isVisible());
    EXPECT_TRUE(window().screen()->availableGeometry().contains(preview().geometry()));
    EXPECT_FALSE(preview().geometry().intersects(window().geometry()));
    press(Qt::Key_Down);
    EXPECT_FALSE(preview().isVisible());
}

TEST_F(HistoryRowActionsTest, ThePreviewOfARowThatThePointerHasLeftDoesNotOpen) {
    copyThree();
    open();
    emit list().entered(list().model()->index(1, 0));
    queue.advance(500ms);
    emit list().viewportEntered();
    queue.advance(500ms);
    settle();
    EXPECT_FALSE(preview().isVisible());
    emit list().entered(list().model()->index(1, 0));
    panel.close();
    queue.advance(1s);
    settle();
    EXPECT_FALSE(preview().isVisible());
}

TEST_F(HistoryRowActionsTest, ThePreviewOfAPictureWaitsForIt) {
    copyImage(png({900, 300}));
    open();
    load();
    emit list().entered(list().model()->index(0, 0));
    queue.advance(700ms);
    settle();
    EXPECT_FALSE(preview().isVisible());
    load();
    EXPECT_TRUE(preview().isVisible());
    EXPECT_GE(preview().width(), 480);
    EXPECT_LT(preview().height(), 300);
}

} // namespace
} // namespace quillane

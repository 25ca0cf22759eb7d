// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"

#include <QAccessible>
#include <QScrollBar>

namespace quillane {
namespace {

using ::testing::SizeIs;

/// The rows of the list, as they are drawn and as screen readers see them.
class HistoryRowsTest : public HistoryPanelTest {
protected:
    void copyMany(int count, const std::function<void(int)>& copy) {
        for (int i = 0; i < count; ++i) {
            copy(i);
            queue.advance(std::chrono::milliseconds(500));
        }
        settle();
    }

    [[nodiscard]] int heightOf(int row) { return list().visualRect(list().model()->index(row, 0)).height(); }

    [[nodiscard]] QAccessibleInterface& accessibleList() { return *QAccessible::queryAccessibleInterface(&list()); }
};

TEST_F(HistoryRowsTest, OnlyThoseInViewAreDrawnAndOnlyTheirPicturesAreMade) {
    copyMany(300, [&](int i) { pasteboard.copy({{{{"public.png", png({8, 8}, QColor(i % 256, i / 256, 7))}}, {}}}); });
    ASSERT_THAT(manager.history().entries(), SizeIs(300));
    open();
    EXPECT_LT(imageQueue.count(), 20U);
    EXPECT_GT(imageQueue.count(), 3U);
    const int drawn = delegateOf(list()).drawnCount();
    EXPECT_LT(drawn, 60);
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->maximum());
    settle();
    imageQueue.wait(); // those out of view are not decoded
    settle();
    EXPECT_LT(delegateOf(list()).drawnCount() - drawn, 60);
}

TEST_F(HistoryRowsTest, APictureIsAsHighAsTheOptionsSay) {
    copyImage(png({400, 400}));
    open();
    load();
    const int at60 = heightOf(0);
    panel.close();
    auto options = manager.options();
    options.imageHeight = 120;
    manager.setOptions(options);
    open();
    load();
    EXPECT_EQ(heightOf(0), at60 + 60);
    panel.close();
    options.imageHeight = 2'000'000'000;
    manager.setOptions(options);
    open();
    load();
    EXPECT_EQ(heightOf(0), at60 + 60);
}

TEST_F(HistoryRowsTest, ALongTextTakesTwoLinesAndAListOfFilesThree) {
    copyText("short");
    copyText(std::string(5000, 'w'));
    copyFiles({"file:///a/1", "file:///a/2", "file:///a/3", "file:///a/4", "file:///a/5"});
    open();
    load();
    EXPECT_GT(heightOf(0), heightOf(1));
    EXPECT_GT(heightOf(1), heightOf(2));
}

TEST_F(HistoryRowsTest, AFileThatIsGoneSaysSoWhenItHasBeenLookedFor) {
    const auto kept = files.url("kept.txt", "x");
    copyFiles({"file:///nowhere/gone.txt"});
    copyFiles({kept.absoluteString()});
    open();
    EXPECT_FALSE(nameOfRow(1).contains("moved or deleted")); // nobody waits for the disk
    load();
    EXPECT_TRUE(nameOfRow(1).contains("File moved or deleted"));
    EXPECT_FALSE(nameOfRow(0).contains("moved or deleted"));
    panel.close();
    std::filesystem::remove(*kept.filePath());
    open();
    load();
    EXPECT_TRUE(nameOfRow(0).contains("File moved or deleted"));
}

TEST_F(HistoryRowsTest, FileThatFinderHasCopiedIsLookedForWhereItIs) {
    const auto file = files.file("kept.txt");
    pasteboard.copyFiles({file});
    copied();
    open();
    load();
    EXPECT_TRUE(nameOfRow(0).contains("kept.txt"));
    EXPECT_FALSE(nameOfRow(0).contains("moved or deleted"));
    panel.close();
    std::filesystem::remove(file);
    open();
    load();
    EXPECT_TRUE(nameOfRow(0).contains("File moved or deleted"));
}

TEST_F(HistoryRowsTest, ScreenReadersSeeNamesStatesAndActions) {
    copyText("first");
    copyText("second");
    open();
    auto& accessible = accessibleList();
    ASSERT_EQ(accessible.childCount(), 2);
    EXPECT_EQ(accessible.role(), QAccessible::List);
    EXPECT_FALSE(accessible.text(QAccessible::Name).isEmpty());
    auto* row = accessible.child(1);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row, accessible.child(1));
    EXPECT_EQ(accessible.indexOfChild(row), 1);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_TRUE(row->text(QAccessible::Name).contains("first"));
    EXPECT_FALSE(row->state().selected);
    EXPECT_TRUE(accessible.child(0)->state().selected);
    EXPECT_FALSE(row->rect().isEmpty());
    auto* action = row->actionInterface();
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(action->localizedActionName(QAccessibleActionInterface::pressAction()), "Paste");
    action->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(pasted(), "first");
}

TEST_F(HistoryRowsTest, ScreenReadersOpenTheMenu) {
    copyText("first");
    copyText("second");
    open();
    accessibleList().child(1)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    settle();
    EXPECT_TRUE(find<QMenu>("rowMenu").isVisible());
    EXPECT_EQ(list().currentIndex().row(), 1);
}

TEST_F(HistoryRowsTest, ScreenReadersHearOfTheSelectionWhileTheKeysAreInTheField) {
    copyText("first");
    copyText("second");
    std::vector<int> announcedRows;
    QObject::connect(static_cast<ClipboardList*>(&list()), &ClipboardList::rowAnnounced, &window(),
                     [&](int row) { announcedRows.push_back(row); });
    open();
    QTest::keyClick(&field(), Qt::Key_Down);
    settle();
    QTest::keyClick(&field(), Qt::Key_Down); // already at the end
    settle();
    EXPECT_EQ(announcedRows, (std::vector{0, 1}));
    EXPECT_TRUE(field().hasFocus());
    EXPECT_TRUE(accessibleList().child(1)->state().focused);
}

TEST_F(HistoryRowsTest, RowsOfAScreenReaderGoWithTheirEntries) {
    copyText("first");
    copyText("second");
    open();
    EXPECT_NE(accessibleList().child(1), nullptr);
    QTest::keyClicks(&field(), "first");
    settle();
    EXPECT_EQ(accessibleList().childCount(), 1);
    EXPECT_EQ(accessibleList().child(1), nullptr);
    EXPECT_TRUE(accessibleList().child(0)->text(QAccessible::Name).contains("first"));
}

} // namespace
} // namespace quillane

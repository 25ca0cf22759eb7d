// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"

namespace quillane {
namespace {

/// The panel with the keys and texts of Linux, on every desktop.
class HistoryPanelOnLinuxTest : public HistoryPanelTest {
protected:
    HistoryPanelOnLinuxTest() : HistoryPanelTest(core::Desktop::linuxDesktop) {}
};

TEST_F(HistoryPanelOnLinuxTest, ShiftDeleteDeletesTheEntry) {
    copyThree();
    open();
    press(Qt::Key_Delete);
    EXPECT_EQ(rows(), 3);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(*panel.filtered().front().text, "second");
}

TEST_F(HistoryPanelOnLinuxTest, ControlBackspaceDeletesAWordOfTheSearch) {
    copyThree();
    open();
    QTest::keyClicks(&field(), "fir t");
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(panel.query(), "fir ");
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(panel.query(), "");
    EXPECT_EQ(rows(), 3);
}

TEST_F(HistoryPanelOnLinuxTest, TheFooterAndTheHelpNameItsKeys) {
    copyThree();
    open();
    EXPECT_EQ(find<QLabel>("footerText").text(), "Enter to paste · Alt+Enter to copy · Shift+Enter for plain text");
    find<QToolButton>("help").click();
    const auto help = find<QLabel>("helpCard").text().remove(QChar(0x2066)).remove(QChar(0x2069));
    EXPECT_TRUE(help.contains("Ctrl+1–Ctrl+9")) << help.toStdString();
    EXPECT_TRUE(help.contains("Shift+Delete")) << help.toStdString();
}

} // namespace
} // namespace quillane

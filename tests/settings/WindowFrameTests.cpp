// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/WindowFrame.hpp"

#include "settings/SettingsTest.hpp"

#include <QTest>

namespace quillane {
namespace {

using core::SettingsPage;

constexpr QRect area(100, 50, 1280, 700);

TEST(WindowFrame, AStoredFrameIsReadBack) {
    const QRect frame(-20, 10, 750, 730);
    EXPECT_EQ(windowFrame::stored(frame), "-20 10 750 730");
    EXPECT_EQ(windowFrame::parse("-20 10 750 730"), frame);
    for (const auto* other : {"nonsense", "1 2 3", "10 10 x 9", "", "1 2 0 4"}) {
        EXPECT_EQ(windowFrame::parse(other), std::nullopt) << other;
    }
}

TEST(WindowFrame, FrameInsideTheAreaStays) {
    const QRect frame(200, 60, 700, 690);
    EXPECT_EQ(windowFrame::fitted(frame, area), frame);
    EXPECT_EQ(windowFrame::fitted(area, area), area);
}

TEST(WindowFrame, FrameBeyondAnEdgeMovesInside) {
    EXPECT_EQ(windowFrame::fitted({90, 40, 700, 600}, area), QRect(100, 50, 700, 600));
    EXPECT_EQ(windowFrame::fitted({900, 200, 700, 600}, area), QRect(680, 150, 700, 600));
}

TEST(WindowFrame, FrameThatIsTooLargeTakesTheSizeOfTheArea) {
    EXPECT_EQ(windowFrame::fitted({200, 60, 760, 816}, area), QRect(200, 50, 760, 700));
    EXPECT_EQ(windowFrame::fitted({0, 0, 2000, 2000}, area), area);
}

TEST(WindowFrame, TitleBarOutsideTheAreaIsNotReachable) {
    EXPECT_TRUE(windowFrame::isReachable({1300, 60, 700, 600}, area));
    EXPECT_FALSE(windowFrame::isReachable({1301, 60, 700, 600}, area));
    EXPECT_FALSE(windowFrame::isReachable({200, 29, 700, 600}, area)) << "only the window's contents are on the screen";
}

class SettingsFrameTest : public SettingsTest {
protected:
    using SettingsTest::SettingsTest;

    [[nodiscard]] std::string kept() {
        return desktop.userDefaults.string(SettingsWindow::frameKey).value_or(std::string());
    }
};

TEST_F(SettingsFrameTest, FrameOfAMaximizedOrFullScreenWindowIsNotKept) {
    for (const auto state : {Qt::WindowMaximized, Qt::WindowFullScreen}) {
        present(SettingsPage::general);
        window().setGeometry(20, 10, 750, 730);
        const auto place = window().pos();
        const auto frame = windowFrame::stored({place, QSize(750, 730)});
        ASSERT_TRUE(QTest::qWaitFor([&] { return kept() == frame; }));
        window().setWindowState(state);
        settle();
        ASSERT_NE(window().size(), QSize(750, 730));
        window().close();
        EXPECT_EQ(kept(), frame) << state;
        closeForever();
        EXPECT_EQ(window().pos(), place);
        EXPECT_EQ(window().size(), QSize(750, 730));
        closeForever();
    }
}

TEST_F(SettingsFrameTest, MaximizedWindowThatIsMinimizedComesBackMaximized) {
    present(SettingsPage::general);
    window().setWindowState(Qt::WindowMaximized | Qt::WindowMinimized);
    settle();
    present(SettingsPage::general);
    EXPECT_EQ(window().windowState(), Qt::WindowMaximized);
}

class SettingsOnASmallScreenTest : public SettingsFrameTest {
protected:
    SettingsOnASmallScreenTest() : SettingsFrameTest(QSize(700, 640)) {}
};

TEST_F(SettingsOnASmallScreenTest, MinimumSizeGivesWayAndTheWholeWindowIsOnTheScreen) {
    desktop.userDefaults.setObject(SettingsWindow::frameKey, "300 200 760 780");
    present(SettingsPage::general);
    const QRect screen(0, 0, 700, 640);
    EXPECT_TRUE(screen.contains(window().frameGeometry())) << windowFrame::stored(window().frameGeometry());
    EXPECT_GT(window().height(), 590) << "as large as the screen permits";
    EXPECT_LE(window().minimumHeight(), 640);
    EXPECT_LE(window().minimumWidth(), 700);
}

} // namespace
} // namespace quillane

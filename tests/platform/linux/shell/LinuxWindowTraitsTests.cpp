// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/LinuxWindowTraits.hpp"

#include "contracts/WindowTraitsContract.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/WindowProcess.hpp"

#include <QApplication>
#include <QCursor>
#include <QPushButton>

#include <optional>

namespace quillane {
namespace {

/// A server with a window manager, and a user at its keyboard.
class LinuxWindowTraitsDriver {
public:
    LinuxWindowTraitsDriver() {
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
        ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
        application_.emplace(argc_, argv_.data());
        connection_ = std::move(*X11Connection::open(server_.display()));
        manager_ = testing::startWindowManager(*connection_);
    }

    WindowTraits& traits() { return traits_; }

    void showInFront(QWidget& window) {
        window.show();
        EXPECT_TRUE(waitUntil([&] {
            window.activateWindow(); // again while the window manager has only just taken the window over
            return window.isActiveWindow();
        }));
    }

    void typeLetter() {
        constexpr std::uint8_t letterV = 55;
        keyboard_.tap(letterV);
    }

    void clickAt(const QPoint& place) {
        QCursor::setPos(place);
        EXPECT_TRUE(waitUntil([&] { return QCursor::pos() == place; }));
        keyboard_.click(1);
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    testing::X11TestServer server_;
    testing::X11TestKeyboard keyboard_;
    std::optional<QApplication> application_; // after the server, which it talks to
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<testing::TestProcess> manager_;
    LinuxWindowTraits traits_;
};

class LinuxWindowTraitsTest : public testing::WindowTraitsContract<LinuxWindowTraitsDriver> {};

TEST_F(LinuxWindowTraitsTest, AClickOnASignReachesTheWindowBelow) {
    int clicks = 0;
    QPushButton below(&front);
    below.setGeometry(front.rect());
    QObject::connect(&below, &QPushButton::clicked, [&] { ++clicks; });
    showFront();
    place = below.rect().translated(front.pos()).adjusted(20, 20, -20, -20);
    ASSERT_TRUE(openPanel(PanelKind::sign));
    QPushButton on(&*panel);
    on.setGeometry(panel->rect());
    on.show();
    QObject::connect(&on, &QPushButton::clicked, [&] { clicks = 100; });
    panel->raise();
    driver.clickAt(place.center());
    EXPECT_TRUE(driver.waitUntil([&] { return clicks > 0; }));
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(panel->isVisible());
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, WindowTraitsContract, LinuxWindowTraitsDriver);
} // namespace testing
} // namespace quillane

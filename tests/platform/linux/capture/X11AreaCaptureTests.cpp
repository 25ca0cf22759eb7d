// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/capture/X11AreaCapture.hpp"

#include "contracts/AreaCaptureContract.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakePasteboard.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <QApplication>
#include <QImage>
#include <QScreen>

#include <cstdlib>
#include <optional>

namespace quillane {
namespace {

using core::AppLanguage;
using core::PixelPoint;
using testing::X11TestKeyboard;

namespace key {
constexpr std::uint8_t escape = 9, enter = 36, up = 111, left = 113, right = 114;
}

/// The selection on a private server with a screen of 640 × 480 pixels, and a user at the pointer and the keys.
class X11AreaCaptureDriver {
public:
    explicit X11AreaCaptureDriver(const char* scale = "1", const std::vector<std::vector<std::string>>& before = {}) {
        for (const auto& command : before) {
            EXPECT_EQ(testing::run(command), 0) << command.front();
        }
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
        ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
        ::setenv("QT_SCALE_FACTOR", scale, 1);
        application_.emplace(argc_, argv_.data());
        queue_.emplace();
        capture_.emplace(pasteboard_, *queue_);
    }

    ~X11AreaCaptureDriver() {
        capture_.reset();
        queue_.reset();
        application_.reset();
        ::unsetenv("QT_SCALE_FACTOR");
    }

    AreaCapture& capture() { return *capture_; }

    void endIdleAfter(std::chrono::milliseconds timeout) { capture_.emplace(pasteboard_, *queue_, timeout); }

    [[nodiscard]] bool isSelecting() const { return capture_->overlay() && capture_->overlay()->isReady(); }

    void cancel() { keyboard_.tap(key::escape); }

    void keepKeyboard() {
        const XReply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(keyboard_.raw(),
                                    xcb_grab_keyboard(keyboard_.raw(), 0, keyboard_.root(), XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr));
        EXPECT_TRUE(reply && reply->status == XCB_GRAB_STATUS_SUCCESS);
    }

    /// Whether another program can take the keyboard and the pointer, as the server says.
    [[nodiscard]] bool isInputFree() {
        auto* const raw = keyboard_.raw();
        constexpr auto mode = XCB_GRAB_MODE_ASYNC;
        const XReply<xcb_grab_keyboard_reply_t> keys(xcb_grab_keyboard_reply(
            raw, xcb_grab_keyboard(raw, 0, keyboard_.root(), XCB_CURRENT_TIME, mode, mode), nullptr));
        const XReply<xcb_grab_pointer_reply_t> pointer(
            xcb_grab_pointer_reply(raw,
                                   xcb_grab_pointer(raw, 0, keyboard_.root(), XCB_EVENT_MASK_BUTTON_PRESS, mode, mode,
                                                    XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME),
                                   nullptr));
        xcb_ungrab_pointer(raw, XCB_CURRENT_TIME);
        giveKeyboardBack();
        return keys && keys->status == XCB_GRAB_STATUS_SUCCESS && pointer && pointer->status == XCB_GRAB_STATUS_SUCCESS;
    }

    /// The number of windows that the server shows on the screen, of all programs.
    [[nodiscard]] int shownWindows() {
        auto* const raw = keyboard_.raw();
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(raw, xcb_query_tree(raw, keyboard_.root()), nullptr));
        int shown = 0;
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
            const XReply<xcb_get_window_attributes_reply_t> window(xcb_get_window_attributes_reply(
                raw, xcb_get_window_attributes(raw, xcb_query_tree_children(tree.get())[i]), nullptr));
            shown += window && window->map_state == XCB_MAP_STATE_VIEWABLE ? 1 : 0;
        }
        return shown;
    }

    /// As when the program quits; its connection to the server is closed last.
    void endCapture() { capture_.reset(); }

    void giveKeyboardBack() {
        xcb_ungrab_keyboard(keyboard_.raw(), XCB_CURRENT_TIME);
        xcb_flush(keyboard_.raw());
    }

    bool waitUntil(const std::function<bool()>& condition) {
        return testing::waitUntil(condition, std::chrono::seconds(4));
    }

    [[nodiscard]] X11TestKeyboard& keyboard() { return keyboard_; }

    [[nodiscard]] const fakes::FakePasteboard& pasteboard() const { return pasteboard_; }

    [[nodiscard]] const AreaOverlay* overlay() const { return capture_->overlay(); }

    // The pointer, in pixels.

    void point(PixelPoint to) { fake(XCB_MOTION_NOTIFY, 0, to); }

    void press(PixelPoint at, std::uint8_t button = 1) {
        point(at);
        fake(XCB_BUTTON_PRESS, button, at);
    }

    void release(PixelPoint at, std::uint8_t button = 1) {
        point(at);
        fake(XCB_BUTTON_RELEASE, button, at);
    }

    /// A window without a frame in one colour (RGB).
    void showColor(std::uint32_t color, const core::PixelRect& area) {
        auto* const raw = keyboard_.raw();
        const auto window = xcb_generate_id(raw);
        const std::array<std::uint32_t, 2> values{color, 1};
        xcb_create_window(raw, XCB_COPY_FROM_PARENT, window, keyboard_.root(), static_cast<std::int16_t>(area.x),
                          static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(raw, window);
        synchronize();
    }

    [[nodiscard]] xcb_window_t focus() {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(keyboard_.raw(), xcb_get_input_focus(keyboard_.raw()), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
    }

private:
    void fake(std::uint8_t type, std::uint8_t detail, PixelPoint at) {
        xcb_test_fake_input(keyboard_.raw(), type, detail, 0, keyboard_.root(), static_cast<std::int16_t>(at.x),
                            static_cast<std::int16_t>(at.y), 0);
        synchronize();
    }

    void synchronize() { static_cast<void>(focus()); }

    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    testing::X11TestServer server_;
    X11TestKeyboard keyboard_;
    std::optional<QApplication> application_;
    std::optional<QtMainQueue> queue_;
    fakes::FakePasteboard pasteboard_;
    std::optional<X11AreaCapture> capture_;
};

class X11AreaCaptureTest : public ::testing::Test {
protected:
    void SetUp() override { setUp(); }

    void setUp(const char* scale = "1", const std::vector<std::vector<std::string>>& before = {}) {
        driver_.reset();
        driver_.emplace(scale, before);
        driver_->showColor(0xff0000, {100, 100, 100, 100});
        driver_->showColor(0x00ff00, {200, 100, 100, 100});
    }

    void start() {
        ASSERT_TRUE(driver_->capture().start(AppLanguage::english, [] { FAIL() << "kept out"; }));
        ASSERT_TRUE(driver_->waitUntil([&] { return driver_->isSelecting(); }));
    }

    [[nodiscard]] bool ends() {
        return driver_->waitUntil([&] { return !driver_->overlay(); });
    }

    /// The picture that has been copied.
    [[nodiscard]] QImage copied() {
        EXPECT_TRUE(ends());
        EXPECT_TRUE(driver_->waitUntil([&] { return !driver_->pasteboard().items().empty(); }));
        if (driver_->pasteboard().items().empty()) {
            return {};
        }
        const auto png = driver_->pasteboard().data(0, core::pasteboardTypes::png);
        return png ? QImage::fromData(reinterpret_cast<const uchar*>((*png)->data()), static_cast<int>((*png)->size()))
                   : QImage();
    }

    /// The current area, once it is that one.
    void expectArea(const core::PixelRect& expected) {
        const auto area = [&] { return driver_->overlay() ? driver_->overlay()->selection().area() : std::nullopt; };
        EXPECT_TRUE(driver_->waitUntil([&] { return area() == expected; }))
            << (area() ? area()->x : -1) << ' ' << (area() ? area()->y : -1) << ' ' << (area() ? area()->width : -1)
            << ' ' << (area() ? area()->height : -1);
    }

    std::optional<X11AreaCaptureDriver> driver_;
};

void expectHalves(const QImage& picture, int width, int height, int border) {
    ASSERT_EQ(picture.size(), QSize(width, height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            ASSERT_EQ(picture.pixelColor(x, y), x < border ? QColor(255, 0, 0) : QColor(0, 255, 0)) << x << ' ' << y;
        }
    }
}

TEST_F(X11AreaCaptureTest, ADragCopiesExactlyThesePixels) {
    start();
    driver_->press({150, 120});
    driver_->point({180, 130});
    driver_->release({229, 159});
    expectHalves(copied(), 80, 40, 50);
}

TEST_F(X11AreaCaptureTest, OnAScreenOfTwiceTheScaleToo) {
    setUp("2");
    start();
    driver_->press({151, 121});
    driver_->release({229, 159});
    expectHalves(copied(), 79, 39, 49);
}

TEST_F(X11AreaCaptureTest, AScaleWithAFractionToo) {
    setUp("1.25");
    start();
    driver_->press({151, 121});
    driver_->release({228, 158});
    expectHalves(copied(), 78, 38, 49);
}

TEST_F(X11AreaCaptureTest, TheWholeScreenCanBeHad) {
    start();
    driver_->press({639, 479});
    driver_->release({0, 0});
    EXPECT_EQ(copied().size(), QSize(640, 480));
}

TEST_F(X11AreaCaptureTest, AnAreaReachesAcrossScreens) {
    setUp("1", {{"xrandr", "--setmonitor", "left", "250/100x480/100+0+0", "screen"},
                {"xrandr", "--setmonitor", "right", "390/100x480/100+250+0", "none"}});
    ASSERT_EQ(QGuiApplication::screens().size(), 2);
    start();
    EXPECT_EQ(driver_->overlay()->pictures().size(), 2U);
    driver_->press({150, 120});
    driver_->point({240, 130});
    driver_->release({279, 159});
    expectHalves(copied(), 130, 40, 50);
}

TEST_F(X11AreaCaptureTest, EscapeCopiesNothingEvenInADrag) {
    start();
    driver_->press({150, 120});
    driver_->point({240, 130});
    driver_->cancel();
    EXPECT_TRUE(ends());
    driver_->release({240, 130});
    EXPECT_EQ(driver_->pasteboard().clears(), 0);
}

TEST_F(X11AreaCaptureTest, TheRightButtonCancels) {
    start();
    driver_->press({150, 120}, 3);
    driver_->release({150, 120}, 3);
    EXPECT_TRUE(ends());
    EXPECT_EQ(driver_->pasteboard().clears(), 0);
}

TEST_F(X11AreaCaptureTest, AClickWithoutADragCancels) {
    start();
    driver_->press({150, 120});
    driver_->release({151, 121});
    EXPECT_TRUE(ends());
    EXPECT_EQ(driver_->pasteboard().clears(), 0);
}

TEST_F(X11AreaCaptureTest, SpaceMovesTheAreaWhileItIsDragged) {
    start();
    driver_->press({110, 110});
    driver_->point({139, 129});
    expectArea({110, 110, 30, 20});
    driver_->keyboard().press(testing::key::space);
    driver_->point({239, 139});
    expectArea({210, 120, 30, 20});
    driver_->keyboard().release(testing::key::space);
    driver_->point({249, 149});
    expectArea({210, 120, 40, 30});
    driver_->release({249, 149});
    EXPECT_EQ(copied().pixelColor(0, 0), QColor(0, 255, 0));
}

TEST_F(X11AreaCaptureTest, ShiftKeepsOneSideWhileItIsDragged) {
    start();
    driver_->press({110, 110});
    driver_->point({139, 129});
    expectArea({110, 110, 30, 20});
    driver_->keyboard().press(testing::key::leftShift);
    driver_->point({189, 133});
    expectArea({110, 110, 80, 20});
    driver_->keyboard().release(testing::key::leftShift);
    driver_->cancel();
    EXPECT_TRUE(ends());
}

TEST_F(X11AreaCaptureTest, KeysAloneSelectAndTake) {
    start();
    auto& keys = driver_->keyboard();
    keys.tap(key::right); // the middle of the screen
    expectArea({160, 120, 320, 240});
    keys.tap(key::left);
    keys.tap(key::up);
    expectArea({150, 110, 320, 240});
    keys.press(testing::key::leftControl);
    keys.tap(key::left);
    keys.release(testing::key::leftControl);
    expectArea({149, 110, 320, 240});
    keys.press(testing::key::leftShift);
    keys.tap(key::left);
    keys.tap(key::up);
    keys.release(testing::key::leftShift);
    expectArea({149, 110, 310, 230});
    keys.tap(key::enter);
    const auto picture = copied();
    EXPECT_EQ(picture.size(), QSize(310, 230));
    EXPECT_EQ(picture.pixelColor(50, 0), QColor(255, 0, 0));
    EXPECT_EQ(picture.pixelColor(51, 0), QColor(0, 255, 0));
}

TEST_F(X11AreaCaptureTest, ReturnWithoutAnAreaDoesNothing) {
    start();
    driver_->keyboard().tap(key::enter);
    EXPECT_FALSE(testing::waitUntil([&] { return !driver_->overlay(); }, std::chrono::milliseconds(300)));
}

TEST_F(X11AreaCaptureTest, AMenuThatClosesAMomentLaterIsWaitedFor) {
    driver_->keepKeyboard();
    ASSERT_TRUE(driver_->capture().start(AppLanguage::english, [] { FAIL() << "kept out"; }));
    EXPECT_FALSE(testing::waitUntil([&] { return driver_->isSelecting(); }, std::chrono::milliseconds(700)));
    driver_->giveKeyboardBack();
    EXPECT_TRUE(driver_->waitUntil([&] { return driver_->isSelecting(); }));
}

TEST_F(X11AreaCaptureTest, WithoutInputForLongItGivesTheKeyboardBack) {
    driver_->endIdleAfter(std::chrono::milliseconds(600));
    start();
    for (int i = 0; i < 4; ++i) { // a user who moves the pointer is still there
        driver_->point({100 + i, 100});
        EXPECT_FALSE(testing::waitUntil([&] { return !driver_->overlay(); }, std::chrono::milliseconds(250)));
    }
    EXPECT_TRUE(ends());
    driver_->keepKeyboard(); // would fail
}

TEST_F(X11AreaCaptureTest, AChangeOfScreensCancels) {
    start();
    EXPECT_EQ(testing::run({"xrandr", "--setmonitor", "left", "250/100x480/100+0+0", "screen"}), 0);
    EXPECT_EQ(testing::run({"xrandr", "--setmonitor", "right", "390/100x480/100+250+0", "none"}), 0);
    EXPECT_TRUE(ends());
    EXPECT_EQ(driver_->pasteboard().clears(), 0);
}

TEST_F(X11AreaCaptureTest, TheFocusStaysWhereItIs) {
    const auto before = driver_->focus();
    start();
    EXPECT_EQ(driver_->focus(), before);
    driver_->cancel();
    EXPECT_TRUE(ends());
    EXPECT_EQ(driver_->focus(), before);
}

TEST_F(X11AreaCaptureTest, NothingIsHeldAfterwards) {
    start();
    driver_->cancel();
    EXPECT_TRUE(ends());
    driver_->keepKeyboard(); // would fail
}

TEST_F(X11AreaCaptureTest, ASelectionEndsWithTheProgram) {
    const auto before = driver_->shownWindows();
    start();
    ASSERT_GT(driver_->shownWindows(), before);
    ASSERT_FALSE(driver_->isInputFree());
    driver_->endCapture();
    EXPECT_TRUE(driver_->waitUntil([&] { return driver_->shownWindows() == before; }));
    EXPECT_TRUE(driver_->waitUntil([&] { return driver_->isInputFree(); }));
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, AreaCaptureContract, X11AreaCaptureDriver);

} // namespace testing
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/X11HotKeys.hpp"

#include "contracts/HotKeysContract.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <array>
#include <chrono>
#include <memory>

namespace quillane {
namespace {

constexpr std::uint8_t vKey = 55;

/// The hot keys on a private server, with a user at the keyboard and another program.
class X11HotKeysDriver {
public:
    X11HotKeysDriver() {
        testing::waitUntil([&] { return session_.keyboard->isCurrent(); });
    }

    HotKeys& hotKeys() { return hotKeys_; }

    [[nodiscard]] X11Session& session() { return session_; }

    [[nodiscard]] testing::X11TestKeyboard& keyboard() { return keyboard_; }

    void press() {
        keyboard_.press(testing::key::leftSuper);
        keyboard_.press(testing::key::leftShift);
        keyboard_.tap(vKey);
        keyboard_.release(testing::key::leftShift);
        keyboard_.release(testing::key::leftSuper);
    }

    /// As most programs grab keys: through the core protocol.
    void takeByAnother() {
        xcb_grab_key(other(), 0, root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT, vKey, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
        synchronizeOther();
    }

    /// Tries to take the whole keyboard, as a menu does. The status of the X protocol.
    [[nodiscard]] int grabByAnother() const {
        const XReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
            other(), xcb_grab_keyboard(other(), 0, root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        return reply ? reply->status : -1;
    }

    /// Whether another program could take the key, as the server says.
    [[nodiscard]] bool isKeyFree() const {
        const XReply<xcb_generic_error_t> error(
            xcb_request_check(other(), xcb_grab_key_checked(other(), 0, root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                                                            vKey, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        if (!error) {
            xcb_ungrab_key(other(), vKey, root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT);
            synchronizeOther();
        }
        return error == nullptr;
    }

    void giveBack() {
        xcb_ungrab_key(other(), vKey, root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT);
        synchronizeOther();
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

    void settle() {
        for (auto* connection : {connection_.get(), session_.connection.get(), connection_.get()}) {
            bool answered = false;
            connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                           [&](const auto*) { answered = true; });
            connection->flush();
            EXPECT_TRUE(testing::waitUntil([&] { return answered; }));
        }
    }

private:
    [[nodiscard]] xcb_connection_t* other() const { return otherProgram_.get(); }

    [[nodiscard]] xcb_window_t root() const { return connection_->root(); }

    void synchronizeOther() const {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(other(), xcb_get_input_focus(other()), nullptr));
    }

    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    testing::X11TestServer server_;
    testing::X11TestKeyboard keyboard_;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> otherProgram_{xcb_connect(nullptr, nullptr),
                                                                               xcb_disconnect};
    core::Lifetime lifetime_;
    X11Session session_ = std::move(*X11Session::open(server_.display()));
    std::unique_ptr<X11Connection> connection_ = std::move(*X11Connection::open(server_.display()));
    X11HotKeys hotKeys_{*connection_, *session_.keyboard};
};

class X11HotKeysTest : public ::testing::Test {
protected:
    [[nodiscard]] core::Subscription registerHere() {
        return driver_.hotKeys().registerHotKey(
            {9, core::flags::command | core::flags::shift}, [this] { ++presses_; }, [this] { ++taken_; });
    }

    X11HotKeysDriver driver_;
    int presses_ = 0;
    int taken_ = 0;
};

TEST_F(X11HotKeysTest, WorksWhicheverLocksAreOn) {
    const auto token = registerHere();
    driver_.settle();
    driver_.keyboard().tap(testing::key::capsLock);
    driver_.press();
    ASSERT_TRUE(testing::waitUntil([&] { return presses_ == 1; }));
    driver_.keyboard().tap(testing::key::numLock);
    driver_.press();
    ASSERT_TRUE(testing::waitUntil([&] { return presses_ == 2; }));
    driver_.keyboard().tap(testing::key::capsLock);
    driver_.press();
    EXPECT_TRUE(testing::waitUntil([&] { return presses_ == 3; }));
}

TEST_F(X11HotKeysTest, ThePressLeavesTheKeyboardToWhateverOpens) {
    int grabbed = -1;
    const auto token = driver_.hotKeys().registerHotKey(
        {9, core::flags::command | core::flags::shift}, [&] { grabbed = driver_.grabByAnother(); }, [] {});
    driver_.settle();
    driver_.keyboard().press(testing::key::leftSuper);
    driver_.keyboard().press(testing::key::leftShift);
    driver_.keyboard().press(vKey);
    EXPECT_TRUE(testing::waitUntil([&] { return grabbed == XCB_GRAB_STATUS_SUCCESS; }));
}

TEST_F(X11HotKeysTest, NeedsExactlyItsModifiers) {
    const auto token = registerHere();
    driver_.settle();
    driver_.keyboard().tap(vKey);
    driver_.keyboard().press(testing::key::leftControl);
    driver_.press();
    driver_.keyboard().release(testing::key::leftControl);
    driver_.press();
    ASSERT_TRUE(testing::waitUntil([&] { return presses_ > 0; }));
    driver_.settle();
    EXPECT_EQ(presses_, 1);
}

TEST_F(X11HotKeysTest, WorksInEveryLayout) {
    ASSERT_EQ(testing::run({"setxkbmap", "us,il"}), 0);
    ASSERT_TRUE(testing::waitUntil([&] { return driver_.session().keyboard->keymap().groupCount() == 2; }));
    const auto token = registerHere();
    driver_.session().keyboard->lockGroup(1);
    driver_.settle();
    driver_.press();
    EXPECT_TRUE(testing::waitUntil([&] { return presses_ == 1; }));
}

TEST_F(X11HotKeysTest, AHeldKeyIsOnePress) {
    const auto token = registerHere();
    driver_.settle();
    driver_.keyboard().press(testing::key::leftSuper);
    driver_.keyboard().press(testing::key::leftShift);
    driver_.keyboard().press(vKey);
    EXPECT_FALSE(testing::waitUntil([&] { return presses_ > 1; }, std::chrono::milliseconds(1'000)));
    EXPECT_EQ(presses_, 1);
    driver_.keyboard().release(vKey);
    driver_.keyboard().tap(vKey);
    EXPECT_TRUE(testing::waitUntil([&] { return presses_ == 2; }));
}

TEST_F(X11HotKeysTest, TheKeyboardIsStillHeard) {
    int heard = 0;
    const auto keys = driver_.session().keyboard->onKey([&](const X11RawEvent&) { ++heard; });
    const auto token = registerHere();
    driver_.settle();
    driver_.press();
    ASSERT_TRUE(testing::waitUntil([&] { return presses_ == 1 && heard == 6; }));
    EXPECT_TRUE(driver_.session().keyboard->keysDown().none());
}

TEST_F(X11HotKeysTest, ADestroyedObjectGivesItsKeysBackAndItsTokensDoNothing) {
    const auto connection = std::move(*X11Connection::open({})); // outlives what uses it
    core::Subscription old;
    {
        X11HotKeys shortLived(*connection, *driver_.session().keyboard);
        old = shortLived.registerHotKey(
            {9, core::flags::command | core::flags::shift}, [] {}, [] {});
        ASSERT_TRUE(connection->settle(std::chrono::seconds(5))); // looking takes the key for a moment
        ASSERT_FALSE(driver_.isKeyFree());
    }
    ASSERT_TRUE(testing::waitUntil([&] { return driver_.isKeyFree(); }));
    const auto token = registerHere();
    driver_.settle();
    old.cancel();
    driver_.settle();
    EXPECT_FALSE(driver_.isKeyFree());
    driver_.press();
    EXPECT_TRUE(testing::waitUntil([&] { return presses_ == 1; }));
    EXPECT_EQ(taken_, 0);
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, HotKeysContract, X11HotKeysDriver);

} // namespace testing
} // namespace quillane

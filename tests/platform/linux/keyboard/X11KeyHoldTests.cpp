// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Lifetime.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11TestClient.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>

namespace quillane {

namespace {

using ::testing::IsEmpty;
using testing::run;
using testing::waitUntil;
namespace key = testing::key;
using namespace std::chrono_literals;

constexpr std::uint64_t everything = 0x2401C0A;
constexpr std::uint8_t escapeKey = 9;
constexpr std::uint8_t deleteKey = 22;

/// Somebody types into an application while a tap holds keys back.
class X11KeyHoldTest : public testing::X11Test {
protected:
    X11KeyHoldTest() {
        EXPECT_EQ(run({"setxkbmap", "us,il"}), 0);
        client_ = std::make_unique<testing::X11TestClient>();
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
        tap_ = std::make_unique<X11EventTap>(session_, *sources_, mainQueue_);
        EXPECT_TRUE(tap_->start(everything,
                                [this](InputEvent& event) { presses_ += event.type == EventType::keyDown ? 1 : 0; }));
        settle();
    }

    /// Waits until the agent has handled the typed keys, and the server the agent's requests.
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            bool answered = false;
            session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()),
                                                                    lifetime_, [&](const auto*) { answered = true; });
            session_.connection->flush();
            EXPECT_TRUE(waitUntil([&] { return answered; }));
        }
    }

    void hold() {
        tap_->hold();
        ASSERT_TRUE(tap_->isHolding());
        settle();
    }

    void type(std::uint8_t keycode) {
        user_.tap(keycode);
        settle();
    }

    bool clientHas(const std::string& text) {
        const bool same = waitUntil([&] { return client_->text() == text; }, 5s);
        EXPECT_EQ(client_->text(), text);
        return same;
    }

    core::Lifetime lifetime_;
    QObject threadEnd_;
    testing::X11TestKeyboard user_;
    std::unique_ptr<testing::X11TestClient> client_;
    X11Session session_;
    QtMainQueue mainQueue_;
    std::unique_ptr<X11InputSources> sources_;
    std::unique_ptr<X11EventTap> tap_;
    int presses_ = 0;
};

TEST_F(X11KeyHoldTest, KeysComeWithTheModifiersOfTheirPress) {
    hold();
    type(key::a);
    user_.press(key::leftShift);
    type(key::s);
    user_.release(key::leftShift);
    type(key::space);
    type(key::d);
    type(deleteKey);
    EXPECT_EQ(presses_, 5) << "the receiver gets them at once";
    EXPECT_EQ(client_->text(), "");
    user_.press(key::rightShift);
    tap_->letGo();
    EXPECT_TRUE(clientHas("aS d\b"));
    user_.release(key::rightShift);
    type(key::m);
    EXPECT_TRUE(clientHas("aS d\bm"));
    EXPECT_EQ(presses_, 6);
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(X11KeyHoldTest, KeysTypeInTheLayoutOfTheirPress) {
    user_.lockGroup(1);
    settle();
    hold();
    type(key::a);
    user_.lockGroup(0);
    type(key::a);
    tap_->letGo();
    EXPECT_TRUE(clientHas("שa"));
}

TEST_F(X11KeyHoldTest, LocksMakeNoDifference) {
    user_.tap(key::numLock);
    user_.tap(key::capsLock);
    settle();
    hold();
    type(key::a);
    EXPECT_EQ(client_->text(), "");
    tap_->letGo();
    EXPECT_TRUE(clientHas("A"));
    user_.tap(key::capsLock);
    user_.tap(key::numLock);
}

TEST_F(X11KeyHoldTest, EscapeAndShortcutsPass) {
    hold();
    type(key::a);
    type(escapeKey);
    EXPECT_TRUE(clientHas("\x1b"));
    user_.press(key::leftControl);
    type(key::s);
    user_.release(key::leftControl);
    EXPECT_TRUE(clientHas("\x1b\x13"));
    tap_->letGo();
    EXPECT_TRUE(clientHas("\x1b\x13"
                          "a"));
}

TEST_F(X11KeyHoldTest, TypingStaysCompleteAndInOrderHoweverOftenItIsHeldBack) {
    std::mt19937 random(20240611); // NOLINT: the same sequence each time
    const std::map<char, std::uint8_t> keys{{'a', key::a}, {'s', key::s}, {'d', key::d}, {'q', key::q},
                                            {'w', key::w}, {'e', key::e}, {'z', key::z}, {'m', key::m}};
    std::string words;
    for (int i = 0; i < 400; ++i) {
        words += "asdqwezm"[random() % 8];
    }
    bool done = false;
    std::thread typist([&] {
        testing::X11TestKeyboard keyboard;
        for (const char letter : words) {
            keyboard.tap(keys.at(letter));
            std::this_thread::sleep_for(3ms);
        }
        QMetaObject::invokeMethod(&threadEnd_, [&] { done = true; });
    });
    while (!done) {
        tap_->hold();
        static_cast<void>(waitUntil([&] { return done; }, std::chrono::milliseconds(random() % 60)));
        tap_->letGo();
        static_cast<void>(waitUntil([&] { return done; }, std::chrono::milliseconds(random() % 20)));
    }
    typist.join();
    EXPECT_TRUE(clientHas(words));
    EXPECT_EQ(presses_, static_cast<int>(words.size()));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

} // namespace

} // namespace quillane

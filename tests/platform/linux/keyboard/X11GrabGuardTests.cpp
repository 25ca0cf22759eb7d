// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11GrabGuard.hpp"

#include "core/keyboard/ShiftEnglish.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11TestClient.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <functional>
#include <map>
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

constexpr std::uint16_t masterKeyboard = 3; // of every server, unless somebody makes more

/// The thread alone: nothing is grabbed.
class X11GrabGuardTest : public testing::X11Test {
protected:
    std::unique_ptr<X11Connection> connection_ = std::move(*X11Connection::open(server_.display()));
    int lettings_ = 0;
    X11GrabGuard guard_{*connection_, [this] { ++lettings_; }};
};

TEST_F(X11GrabGuardTest, LetsGoWhenTheLoopStandsAfterArmingSinceItMayHaveMissedAPress) {
    guard_.arm(masterKeyboard);
    std::this_thread::sleep_for(1s); // the loop stands
    EXPECT_TRUE(waitUntil([&] { return lettings_ > 0; }));
}

TEST_F(X11GrabGuardTest, LetsNothingGoWhileTheLoopTurns) {
    guard_.arm(masterKeyboard);
    EXPECT_FALSE(waitUntil([&] { return lettings_ > 0; }, 1s));
}

/// A user who writes Hebrew with temporary English, and an agent whose main thread is busy with something else.
class BusyLoopTest : public testing::X11Test {
protected:
    BusyLoopTest() {
        EXPECT_EQ(run({"setxkbmap", "us,il"}), 0);
        user_.lockGroup(1);
        client_ = std::make_unique<testing::X11TestClient>();
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
        tap_ = std::make_unique<X11EventTap>(session_, *sources_, mainQueue_);
        tap_->setReplaceableKeys(core::shiftEnglish::keyCodes());
        EXPECT_TRUE(tap_->start(everything, [this](InputEvent& event) { receive(event); }));
        settle(); // the keys are grabbed
        typeShifted(user_, key::a);
        EXPECT_TRUE(waitUntil([&] { return client_->text() == "a"; }, 5s)) << client_->text();
        client_->clear();
    }

    /// Waits until the agent has read what has arrived, and the server has executed what it asked for then.
    void settle() {
        for (int turn = 0; turn < 2; ++turn) {
            bool answered = false;
            session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()),
                                                                    alive_, [&](const auto*) { answered = true; });
            session_.connection->flush();
            EXPECT_TRUE(waitUntil([&] { return answered; }));
        }
    }

    void receive(InputEvent& event) {
        if (event.type != EventType::keyDown) {
            return;
        }
        if (const auto work = work_) { // it may replace itself
            work();
        }
        event.replacementText = core::shiftEnglish::character(
            event.keyCode, {.shift = (event.flags & core::flags::shift) != 0, .rtlSource = true, .editable = true});
    }

    static void typeShifted(testing::X11TestKeyboard& keyboard, std::uint8_t keycode) {
        keyboard.press(key::leftShift);
        keyboard.tap(keycode);
        keyboard.release(key::leftShift);
    }

    /// Runs on another thread while the loop turns, as a user does beside the agent.
    void meanwhile(const std::function<void(testing::X11TestKeyboard&)>& typing) {
        bool done = false;
        std::thread typist([&] {
            testing::X11TestKeyboard keyboard;
            typing(keyboard);
            QMetaObject::invokeMethod(&threadEnd_, [&] { done = true; });
        });
        EXPECT_TRUE(waitUntil([&] { return done; }, 50s));
        typist.join();
    }

    /// Blocks this thread until the application has the text. False when it has not come within the time.
    bool blockUntilClientHas(const std::string& text, std::chrono::milliseconds limit = 5s) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (client_->text() != text && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(5ms);
        }
        return client_->text() == text;
    }

    std::shared_ptr<void> alive_ = std::make_shared<int>();
    QObject threadEnd_;
    testing::X11TestKeyboard user_;
    std::unique_ptr<testing::X11TestClient> client_;
    X11Session session_;
    QtMainQueue mainQueue_;
    std::unique_ptr<X11InputSources> sources_;
    std::unique_ptr<X11EventTap> tap_;
    std::function<void()> work_;
};

TEST_F(BusyLoopTest, PressThatIsHeldBackReachesTheApplicationWithAllThatFollows) {
    bool came = false;
    work_ = [&] {
        work_ = nullptr;
        came = blockUntilClientHas("Aדג");
    };
    meanwhile([](auto& keyboard) {
        typeShifted(keyboard, key::a);
        keyboard.tap(key::s);
        keyboard.tap(key::d);
    });
    EXPECT_TRUE(came) << client_->text();
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(BusyLoopTest, NoFurtherPressIsHeldBackUntilTheLoopTurns) {
    bool came = false;
    std::chrono::steady_clock::duration time{};
    work_ = [&] {
        work_ = nullptr;
        ASSERT_TRUE(blockUntilClientHas("A"));
        const auto begin = std::chrono::steady_clock::now();
        testing::X11TestKeyboard keyboard;
        for (int i = 0; i < 10; ++i) {
            typeShifted(keyboard, key::s);
        }
        came = blockUntilClientHas("ASSSSSSSSSS");
        time = std::chrono::steady_clock::now() - begin;
    };
    meanwhile([](auto& keyboard) { typeShifted(keyboard, key::a); });
    EXPECT_TRUE(came) << client_->text();
    EXPECT_LT(time, 2s); // ten presses that are held back take three seconds
}

TEST_F(BusyLoopTest, ShiftTypingGoesOnOnceTheLoopTurns) {
    work_ = [&] {
        work_ = nullptr;
        blockUntilClientHas("A");
    };
    meanwhile([](auto& keyboard) { typeShifted(keyboard, key::a); });
    ASSERT_TRUE(waitUntil([&] {
        client_->clear();
        typeShifted(user_, key::s);
        return waitUntil([&] { return !client_->text().empty(); }, 1s) && client_->text() == "s";
    })) << client_->text();
    typeShifted(user_, key::d);
    EXPECT_TRUE(waitUntil([&] { return client_->text() == "sd"; }, 5s)) << client_->text();
    EXPECT_TRUE(tap_->isEnabled());
}

TEST_F(BusyLoopTest, KeysThatAreHeldBackReachTheApplicationOfALoopThatStands) {
    tap_->hold();
    settle();
    meanwhile([](auto& keyboard) { keyboard.tap(key::a); });
    settle();
    ASSERT_EQ(client_->text(), "");
    bool came = false;
    work_ = [&] {
        work_ = nullptr;
        came = blockUntilClientHas("דג");
    };
    meanwhile([](auto& keyboard) {
        keyboard.tap(key::s);
        keyboard.tap(key::d);
    });
    EXPECT_TRUE(came) << client_->text();
    EXPECT_TRUE(waitUntil([&] { return client_->text() == "דגש"; }, 5s)) << client_->text();
    EXPECT_FALSE(tap_->isHolding());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(BusyLoopTest, KeysStayCompleteAndInOrderWhenItIsBusyNowAndThen) {
    std::mt19937 random(20240611); // NOLINT: the same sequence each time
    std::string words;
    for (int i = 0; i < 150; ++i) {
        words += "asdqwezm"[random() % 8];
    }
    work_ = [&] {
        if (random() % 25 == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(250 + random() % 300));
        }
    };
    meanwhile([&](auto& keyboard) {
        for (const char letter : words) {
            const std::map<char, std::uint8_t> keys{{'a', key::a}, {'s', key::s}, {'d', key::d}, {'q', key::q},
                                                    {'w', key::w}, {'e', key::e}, {'z', key::z}, {'m', key::m}};
            typeShifted(keyboard, keys.at(letter));
            std::this_thread::sleep_for(15ms);
        }
    });
    const auto typed = [&] { // Shift types the capital where the agent does not make it small
        auto text = client_->text();
        std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return text;
    };
    EXPECT_TRUE(waitUntil([&] { return typed() == words; }, 10s));
    EXPECT_EQ(typed(), words);
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

} // namespace

} // namespace quillane

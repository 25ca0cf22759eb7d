// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11EventTap.hpp"

#include "core/support/Lifetime.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace quillane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::run;
using testing::waitUntil;
namespace flags = core::flags;
namespace key = testing::key;

constexpr std::uint64_t everything = 0x2401C0A;
constexpr core::EventFlags leftShift = flags::shift | flags::leftShift;

class X11EventTapTest : public testing::X11Test {
protected:
    struct Seen {
        EventType type;
        core::KeyCode keyCode;
        core::EventFlags flags;

        bool operator==(const Seen&) const = default;

        friend void PrintTo(const Seen& event, std::ostream* out) {
            *out << static_cast<std::uint32_t>(event.type) << ' ' << event.keyCode << ' ' << std::hex << event.flags;
        }
    };

    /// Starts the tap, and waits until the server knows what it is to send.
    bool start(std::uint64_t mask = everything) {
        const bool started = tap_.start(mask, [this](InputEvent& event) {
            seen_.push_back({event.type, event.keyCode, event.flags});
            if (event.type == EventType::tapDisabledByTimeout) {
                ++disabled_;
                if (enableAtOnce_) {
                    tap_.enable();
                }
            }
        });
        settle();
        return started;
    }

    /// Waits until the server has executed all requests and everything typed so far has arrived.
    void settle() {
        bool answered = false;
        session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()),
                                                                lifetime_, [&](const auto*) { answered = true; });
        session_.connection->flush();
        EXPECT_TRUE(waitUntil([&] { return answered; }));
    }

    std::vector<Seen> typed() {
        user_.synchronize();
        settle();
        return std::exchange(seen_, {});
    }

    testing::X11TestKeyboard user_;
    X11Session session_ = *X11Session::open();
    QtMainQueue mainQueue_;
    X11InputSources sources_{*session_.connection, *session_.keyboard};
    X11EventTap tap_{session_, sources_, mainQueue_};
    std::vector<Seen> seen_;
    int disabled_ = 0;
    bool enableAtOnce_ = true;
    core::Lifetime lifetime_;
};

TEST_F(X11EventTapTest, IsEnabledFromStartToStop) {
    EXPECT_FALSE(tap_.isEnabled());
    ASSERT_TRUE(start());
    EXPECT_TRUE(tap_.isEnabled());
    tap_.stop();
    EXPECT_FALSE(tap_.isEnabled());
    tap_.enable();
    EXPECT_FALSE(tap_.isEnabled());
}

TEST_F(X11EventTapTest, NeedsATypeAndAReceiver) {
    EXPECT_FALSE(start(0));
    EXPECT_FALSE(tap_.start(everything, nullptr));
    EXPECT_FALSE(tap_.isEnabled());
}

TEST_F(X11EventTapTest, KeysComeWithTheirMacNumbersAndTheModifiersAfterThem) {
    ASSERT_TRUE(start());
    user_.press(key::leftShift);
    user_.tap(key::a);
    user_.release(key::leftShift);
    EXPECT_THAT(typed(),
                ElementsAre(Seen{EventType::flagsChanged, 56, leftShift}, Seen{EventType::keyDown, 0, leftShift},
                            Seen{EventType::keyUp, 0, leftShift}, Seen{EventType::flagsChanged, 56, 0}));
}

TEST_F(X11EventTapTest, KeysOfTheVirtualKeyboardComeToo) {
    ASSERT_TRUE(start());
    user_.use(testing::X11TestKeyboard::Device::xtest);
    user_.tap(key::m);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 46, 0}, Seen{EventType::keyUp, 46, 0}));
}

TEST_F(X11EventTapTest, DistinguishesRightHandAndLeftHandModifiers) {
    ASSERT_TRUE(start());
    user_.tap(key::rightShift);
    user_.tap(key::rightAlt);
    user_.tap(key::rightControl);
    user_.tap(key::rightSuper);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::flagsChanged, 60, flags::shift | flags::rightShift},
                                     Seen{EventType::flagsChanged, 60, 0},
                                     Seen{EventType::flagsChanged, 61, flags::option | flags::rightOption},
                                     Seen{EventType::flagsChanged, 61, 0},
                                     Seen{EventType::flagsChanged, 62, flags::control | flags::rightControl},
                                     Seen{EventType::flagsChanged, 62, 0},
                                     Seen{EventType::flagsChanged, 54, flags::command | flags::rightCommand},
                                     Seen{EventType::flagsChanged, 54, 0}));
}

TEST_F(X11EventTapTest, CapsLockIsOneChangeForEachTurn) {
    ASSERT_TRUE(start());
    user_.tap(key::capsLock);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::flagsChanged, 57, flags::capsLock}));
    user_.tap(key::capsLock);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::flagsChanged, 57, 0}));
}

TEST_F(X11EventTapTest, ClicksAndScrollsComeByTheirKind) {
    ASSERT_TRUE(start());
    for (const auto button : std::to_array<std::uint8_t>({1, 2, 3, 4, 7, 8})) {
        user_.click(button);
    }
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::leftMouseDown, 0, 0}, Seen{EventType::otherMouseDown, 0, 0},
                                     Seen{EventType::rightMouseDown, 0, 0}, Seen{EventType::scrollWheel, 0, 0},
                                     Seen{EventType::scrollWheel, 0, 0}, Seen{EventType::otherMouseDown, 0, 0}));
}

TEST_F(X11EventTapTest, OnlyTheTypesOfTheMaskCome) {
    ASSERT_TRUE(start(maskBit(EventType::keyUp)));
    user_.press(key::leftShift);
    user_.tap(key::a);
    user_.release(key::leftShift);
    user_.click(1);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyUp, 0, leftShift}));
}

TEST_F(X11EventTapTest, NothingComesAfterStop) {
    ASSERT_TRUE(start());
    user_.tap(key::a);
    tap_.stop();
    user_.tap(key::s);
    user_.click(1);
    EXPECT_THAT(typed(), IsEmpty());
}

TEST_F(X11EventTapTest, KeysComeWhileAnotherProgramHoldsTheKeyboard) {
    ASSERT_TRUE(start());
    std::free(xcb_grab_keyboard_reply(
        user_.raw(), xcb_grab_keyboard(user_.raw(), 0, user_.root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    user_.tap(key::a);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 0, 0}, Seen{EventType::keyUp, 0, 0}));
    xcb_ungrab_keyboard(user_.raw(), 0);
    user_.synchronize();
}

TEST_F(X11EventTapTest, SurvivesAnotherKeyboardMap) {
    ASSERT_TRUE(start());
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il", "-option", "ctrl:swapcaps"}), 0);
    settle();
    typed();
    user_.tap(key::a);
    user_.tap(key::capsLock);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 0, 0}, Seen{EventType::keyUp, 0, 0},
                                     Seen{EventType::flagsChanged, 59, flags::control | flags::leftControl},
                                     Seen{EventType::flagsChanged, 59, 0}));
}

TEST_F(X11EventTapTest, SurvivesAKeyboardThatIsUnpluggedAndPluggedInAgain) {
    ASSERT_TRUE(start());
    user_.press(key::leftShift);
    ASSERT_EQ(run({"xinput", "disable", "Xvfb keyboard"}), 0);
    typed();
    ASSERT_TRUE(waitUntil([&] { return session_.keyboard->flags() == 0; }));
    ASSERT_EQ(run({"xinput", "enable", "Xvfb keyboard"}), 0);
    typed();
    user_.tap(key::a);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 0, 0}, Seen{EventType::keyUp, 0, 0}));
    EXPECT_EQ(disabled_, 0);
}

TEST_F(X11EventTapTest, AKilledConnectionIsReportedOnceAndTheTapWorksAgainWithinTwoSeconds) {
    ASSERT_TRUE(start());
    const auto window = xcb_generate_id(session_.connection->raw());
    xcb_create_window(session_.connection->raw(), 0, window, session_.connection->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    typed();
    xcb_kill_client(user_.raw(), window);
    user_.synchronize();
    ASSERT_TRUE(waitUntil([&] { return disabled_ == 1; }));
    ASSERT_TRUE(waitUntil([&] { return tap_.isEnabled(); }, std::chrono::seconds(2)));
    seen_.clear();
    user_.press(key::rightShift);
    user_.release(key::rightShift);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::flagsChanged, 60, flags::shift | flags::rightShift},
                                     Seen{EventType::flagsChanged, 60, 0}));
    EXPECT_EQ(disabled_, 1);
}

TEST_F(X11EventTapTest, AServerHeldByAnotherProgramIsReportedOnceAndTheTapWorksAgainAfterwards) {
    ASSERT_TRUE(start());
    typed();
    xcb_grab_server(user_.raw());
    user_.synchronize();
    ASSERT_TRUE(waitUntil([&] { return disabled_ == 1; }));
    EXPECT_FALSE(tap_.isEnabled());
    // One more turn of the watchdog passes without a second report.
    const auto later = std::chrono::steady_clock::now() + std::chrono::milliseconds(2100);
    waitUntil([&] { return std::chrono::steady_clock::now() > later; });
    EXPECT_EQ(disabled_, 1);
    xcb_ungrab_server(user_.raw());
    user_.synchronize();
    ASSERT_TRUE(waitUntil([&] { return tap_.isEnabled(); }, std::chrono::seconds(2)));
    seen_.clear();
    user_.tap(key::a);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 0, 0}, Seen{EventType::keyUp, 0, 0}));
}

TEST_F(X11EventTapTest, ATapThatMissesKeysIsReportedAndRestoredWithinTwoSeconds) {
    ASSERT_TRUE(start());
    typed();

    // Uses of the shared connection by other parts of the program.
    const struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } nothing{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};

    xcb_input_xi_select_events(session_.connection->raw(), session_.connection->root(), 1, &nothing.header);
    EXPECT_THAT(typed(), IsEmpty());
    const auto begin = std::chrono::steady_clock::now();
    waitUntil([&] {
        user_.tap(key::a);
        return disabled_ == 1;
    });
    EXPECT_EQ(disabled_, 1);
    EXPECT_TRUE(tap_.isEnabled());
    typed();
    user_.tap(key::s);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 1, 0}, Seen{EventType::keyUp, 1, 0}));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(X11EventTapTest, AHeldKeyThatRepeatsIsNotSilence) {
    ASSERT_TRUE(start());
    user_.press(key::a);
    const auto later = std::chrono::steady_clock::now() + std::chrono::milliseconds(3200);
    waitUntil([&] { return std::chrono::steady_clock::now() > later; });
    user_.release(key::a);
    typed();
    EXPECT_EQ(disabled_, 0);
}

/// Answers are read late, and the server had them in time.
TEST_F(X11EventTapTest, LateLoopIsNotSilence) {
    ASSERT_TRUE(start());
    user_.tap(key::a); // lately enough that the server knows how long ago
    typed();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    for (int i = 0; std::chrono::steady_clock::now() < end; ++i) {
        QCoreApplication::processEvents(); // once: what it asks is answered while it sleeps
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 3 == 0 ? 900 : 130));
    }
    EXPECT_EQ(disabled_, 0);
    EXPECT_TRUE(tap_.isEnabled());
}

TEST_F(X11EventTapTest, StaysDisabledUntilItIsEnabled) {
    enableAtOnce_ = false;
    ASSERT_TRUE(start());
    typed();
    xcb_grab_server(user_.raw());
    user_.synchronize();
    ASSERT_TRUE(waitUntil([&] { return disabled_ == 1; }));
    xcb_ungrab_server(user_.raw());
    user_.synchronize();
    seen_.clear();
    user_.tap(key::a);
    EXPECT_THAT(typed(), IsEmpty());
    tap_.enable();
    ASSERT_TRUE(waitUntil([&] { return tap_.isEnabled(); }));
    user_.tap(key::a);
    EXPECT_THAT(typed(), ElementsAre(Seen{EventType::keyDown, 0, 0}, Seen{EventType::keyUp, 0, 0}));
}

} // namespace

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacEventTap.hpp"
#include "platform/macos/keyboard/MacHotKeys.hpp"
#include "platform/macos/keyboard/MacKeyEvents.hpp"
#include "platform/macos/keyboard/MacSecureInput.hpp"

#include "contracts/EventTapContract.hpp"
#include "contracts/HotKeysContract.hpp"
#include "contracts/KeyEventsContract.hpp"
#include "contracts/SecureInputContract.hpp"
#include "standins/macos/Mac.hpp"

#include <set>
#include <stdexcept>
#include <utility>

namespace quillane {
namespace {

using fakes::Modifier;

constexpr CGEventType keyDown = 10;
constexpr CGEventType keyUp = 11;
constexpr CGEventType flagsChanged = 12;

/// The hands of the user.
class Hands {
public:
    explicit Hands(standin::Keyboard& keyboard) : keyboard_(keyboard) {}

    void press(core::KeyCode key) { keyboard_.press(key, keyDown, flags()); }

    void release(core::KeyCode key) { keyboard_.release(key, keyUp, flags()); }

    void press(Modifier modifier) {
        held_.insert(modifier);
        keyboard_.press(keyOf(modifier).keyCode, flagsChanged, flags());
    }

    void release(Modifier modifier) {
        held_.erase(modifier);
        keyboard_.release(keyOf(modifier).keyCode, flagsChanged, flags());
    }

private:
    [[nodiscard]] core::EventFlags flags() const {
        core::EventFlags result = 0;
        for (const auto modifier : held_) {
            result |= keyOf(modifier).common | keyOf(modifier).own;
        }
        return result;
    }

    standin::Keyboard& keyboard_;
    std::set<Modifier> held_;
};

class StandInEventTapDriver {
public:
    StandInEventTapDriver() { mac.keyboard.layout = {{0, u"ש"}, {1, u"ד"}}; }

    EventTap& tap() { return tap_; }

    void press(auto key) { hands_.press(key); }

    void release(auto key) { hands_.release(key); }

    void click() { mac.keyboard.send(1); }

    void scroll() { mac.keyboard.send(22); }

    [[nodiscard]] std::u16string text() const { return mac.keyboard.typed; }

    [[nodiscard]] std::u16string ownText(core::KeyCode key) { return mac.keyboard.layout[key]; }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    standin::Mac mac;

private:
    Hands hands_{mac.keyboard};
    MacEventTap tap_;
};

class StandInKeyEventsDriver {
public:
    KeyEvents& events() { return events_; }

    static pid_t target() { return 77; }

    void holdShift() { hands_.press(Modifier::leftShift); }

    void releaseShift() { hands_.release(Modifier::leftShift); }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    [[nodiscard]] std::size_t pressesOf(core::KeyCode keyCode) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            mac.keyboard.posted, [&](const auto& event) { return event.isDown && event.key == keyCode; }));
    }

    standin::Mac mac;

private:
    Hands hands_{mac.keyboard};
    MacKeyEvents events_;
};

class StandInHotKeysDriver {
public:
    ~StandInHotKeysDriver() { giveBack(); }

    HotKeys& hotKeys() { return hotKeys_; }

    void press() { mac.hotKeys.press(9, cmdKey | shiftKey); }

    void takeByAnother() {
        EXPECT_EQ(RegisterEventHotKey(9, cmdKey | shiftKey, {1, 1}, GetApplicationEventTarget(), 0, &other_), noErr);
    }

    void giveBack() {
        if (other_ != nullptr) {
            UnregisterEventHotKey(std::exchange(other_, nullptr));
        }
    }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    void settle() { mac.turn(); }

    standin::Mac mac;

private:
    MacHotKeys hotKeys_;
    EventHotKeyRef other_ = nullptr;
};

class StandInSecureInputDriver {
public:
    SecureInput& input() { return input_; }

    void beginPassword() { mac.keyboard.secureInput = true; }

    void endPassword() { mac.keyboard.secureInput = false; }

    standin::Mac mac;

private:
    MacSecureInput input_;
};

class MacEventTapTest : public ::testing::Test {
protected:
    static constexpr std::uint64_t keys =
        maskBit(EventType::keyDown) | maskBit(EventType::keyUp) | maskBit(EventType::flagsChanged);

    bool start() {
        return tap.start(keys, [this](InputEvent& event) { received.push_back(event.type); });
    }

    standin::Mac mac;
    Hands hands{mac.keyboard};
    MacEventTap tap;
    std::vector<EventType> received;
};

TEST_F(MacEventTapTest, WithoutPermissionNothingIsLeftBehind) {
    mac.keyboard.permits = false;
    EXPECT_FALSE(start());
    EXPECT_FALSE(tap.isEnabled());
    EXPECT_EQ(mac.activities, 0);
}

TEST_F(MacEventTapTest, WithoutASourceNothingIsLeftBehind) {
    mac.keyboard.givesSources = false;
    EXPECT_FALSE(start());
    EXPECT_TRUE(mac.keyboard.taps.empty());
}

TEST_F(MacEventTapTest, TapThatStaysDisabledIsGivenUp) {
    mac.keyboard.enablesTaps = false;
    EXPECT_FALSE(start());
    EXPECT_TRUE(mac.keyboard.taps.empty());
    EXPECT_EQ(mac.activities, 0);
}

TEST_F(MacEventTapTest, KeepsTheProgramAwakeWhileItRuns) {
    ASSERT_TRUE(start());
    EXPECT_EQ(mac.activities, 1);
    ASSERT_TRUE(start()) << "in the place of the first one";
    EXPECT_EQ(mac.keyboard.taps.size(), 1U);
    EXPECT_EQ(mac.activities, 1);
    tap.stop();
    EXPECT_EQ(mac.activities, 0);
}

TEST_F(MacEventTapTest, IsEnabledAgainAfterTheSystemHasDisabledIt) {
    for (const auto notice : {EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}) {
        received.clear();
        ASSERT_TRUE(start());
        mac.keyboard.disableTaps(static_cast<CGEventType>(notice));
        EXPECT_EQ(received, std::vector{notice}) << "its notice has no event";
        EXPECT_FALSE(tap.isEnabled());
        hands.press(core::KeyCode{1});
        EXPECT_EQ(received.size(), 1U);
        tap.enable();
        EXPECT_TRUE(tap.isEnabled());
        hands.release(core::KeyCode{1});
        EXPECT_EQ(received.size(), 2U);
    }
}

TEST_F(MacEventTapTest, NullEventIsPassedOn) {
    ASSERT_TRUE(tap.start(keys, [this](InputEvent& event) {
        received.push_back(event.type);
        event.replacementText = u'a';
    }));
    mac.keyboard.sendNullEvent(keyDown);
    EXPECT_TRUE(received.empty());
}

TEST_F(MacEventTapTest, OnlyTheTextOfKeysIsReplaced) {
    ASSERT_TRUE(tap.start(maskBit(EventType::leftMouseDown), [this](InputEvent& event) {
        received.push_back(event.type);
        event.replacementText = u'a';
    }));
    mac.keyboard.send(static_cast<CGEventType>(EventType::leftMouseDown));
    EXPECT_EQ(received.size(), 1U);
    EXPECT_EQ(mac.keyboard.typed, u"");
}

TEST_F(MacEventTapTest, SecureInputHidesKeysFromTheTapAndNotFromTheSystem) {
    const MacKeyEvents events;
    ASSERT_TRUE(start());
    hands.press(Modifier::leftShift);
    mac.keyboard.secureInput = true;
    hands.release(Modifier::leftShift);
    EXPECT_EQ(received, std::vector{EventType::flagsChanged});
    EXPECT_FALSE(events.isKeyDown(keyOf(Modifier::leftShift).keyCode));
    EXPECT_EQ(events.currentFlags(), 0U);
}

TEST_F(MacEventTapTest, ExceptionOfTheReceiverLetsTheEventPass) {
    mac.keyboard.layout = {{1, u"x"}};
    ASSERT_TRUE(tap.start(keys, [](InputEvent&) { throw std::runtime_error("typed"); }));
    hands.press(core::KeyCode{1});
    EXPECT_EQ(mac.keyboard.typed, u"x");
    EXPECT_EQ(mac.log.size(), 1U);
}

TEST(MacKeyEvents, PostedKeyCarriesExactlyItsModifiers) {
    standin::Mac mac;
    mac.keyboard.flags = core::flags::shift;
    EXPECT_TRUE(MacKeyEvents().postKey(77, 9, core::flags::command));
    ASSERT_EQ(mac.keyboard.posted.size(), 2U);
    for (const auto& event : mac.keyboard.posted) {
        EXPECT_EQ(event.pid, 77);
        EXPECT_EQ(event.key, 9);
        EXPECT_EQ(event.flags, core::flags::command);
    }
    EXPECT_TRUE(mac.keyboard.posted[0].isDown);
    EXPECT_FALSE(mac.keyboard.posted[1].isDown);
}

TEST(MacKeyEvents, KeyIsPostedWholeOrNotAtAll) {
    standin::Mac mac;
    for (const int events : {0, 1}) {
        mac.keyboard.eventsLeft = events;
        EXPECT_FALSE(MacKeyEvents().postKey(77, 9, core::flags::command));
    }
    EXPECT_TRUE(mac.keyboard.posted.empty());
}

class MacHotKeysTest : public ::testing::Test {
protected:
    standin::Mac mac;
    std::optional<MacHotKeys> hotKeys{std::in_place};
    int presses = 0;
    int taken = 0;

    core::Subscription add(const HotKey& key) {
        return hotKeys->registerHotKey(
            key, [this] { ++presses; }, [this] { ++taken; });
    }
};

TEST_F(MacHotKeysTest, EachModifierIsTranslated) {
    for (const auto& [flag, modifier] : {std::pair{core::flags::command, cmdKey},
                                         {core::flags::shift, shiftKey},
                                         {core::flags::option, optionKey},
                                         {core::flags::control, controlKey}}) {
        const auto token = add({9, flag});
        ASSERT_EQ(mac.hotKeys.keys().size(), 1U);
        EXPECT_EQ(mac.hotKeys.keys().front()->modifiers, modifier);
        EXPECT_EQ(mac.hotKeys.keys().front()->identifier.id, 1U) << "the lowest that is free";
    }
}

TEST_F(MacHotKeysTest, EachKeyHasItsOwnIdentifier) {
    const auto first = add({9, core::flags::command});
    const auto second = add({9, core::flags::shift});
    ASSERT_EQ(mac.hotKeys.keys().size(), 2U);
    EXPECT_EQ(mac.hotKeys.keys().back()->identifier.id, 2U);
}

TEST_F(MacHotKeysTest, WithoutAHandlerTheKeyCountsAsTaken) {
    hotKeys.reset();
    mac.hotKeys.installsHandlers = false;
    hotKeys.emplace();
    const auto token = add({9, core::flags::command});
    mac.turn();
    EXPECT_EQ(taken, 1);
    EXPECT_TRUE(mac.hotKeys.keys().empty());
}

TEST_F(MacHotKeysTest, DroppedTokenTakesItsNoticeWithIt) {
    const auto first = add({9, core::flags::command});
    static_cast<void>(add({9, core::flags::command}));
    mac.turn();
    EXPECT_EQ(taken, 0);
}

TEST_F(MacHotKeysTest, EventsOfOthersAreNotHandled) {
    const auto token = add({9, core::flags::command});
    const auto signature = mac.hotKeys.keys().front()->identifier.signature;
    EXPECT_EQ(mac.hotKeys.send(std::nullopt), eventNotHandledErr);
    EXPECT_EQ(mac.hotKeys.send(EventHotKeyID{signature + 1, 1}), eventNotHandledErr);
    EXPECT_EQ(mac.hotKeys.send(EventHotKeyID{signature, 2}), eventNotHandledErr);
    EXPECT_EQ(presses, 0);
    EXPECT_EQ(mac.hotKeys.send(EventHotKeyID{signature, 1}), noErr);
    EXPECT_EQ(presses, 1);
}

TEST_F(MacHotKeysTest, ExceptionOfAHandlerEndsInTheEvent) {
    const auto token = hotKeys->registerHotKey(
        {9, core::flags::command}, [] { throw std::runtime_error("pressed"); }, [] {});
    const auto other = hotKeys->registerHotKey(
        {9, core::flags::command}, [] {}, [] { throw std::runtime_error("taken"); });
    mac.hotKeys.press(9, cmdKey);
    mac.turn();
    EXPECT_EQ(mac.log.size(), 2U);
}

TEST_F(MacHotKeysTest, HandlerMayEndEverything) {
    core::Subscription token;
    token = hotKeys->registerHotKey(
        {9, core::flags::command},
        [&] {
            hotKeys.reset();
            ++presses;
        },
        [] {});
    mac.hotKeys.press(9, cmdKey);
    mac.turn();
    EXPECT_EQ(presses, 1);
    EXPECT_TRUE(mac.hotKeys.keys().empty());
    token.cancel(); // outlives what it was taken from
}

TEST_F(MacHotKeysTest, TokenMayBeCancelledAfterTheKeysAreGone) {
    auto token = add({9, core::flags::command});
    hotKeys.reset();
    EXPECT_TRUE(mac.hotKeys.keys().empty());
    token.cancel();
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, EventTapContract, StandInEventTapDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, KeyEventsContract, StandInKeyEventsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, HotKeysContract, StandInHotKeysDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, SecureInputContract, StandInSecureInputDriver);
} // namespace testing
} // namespace quillane

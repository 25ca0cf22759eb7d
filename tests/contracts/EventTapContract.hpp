// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "contracts/Lacking.hpp"
#include "platform/EventTap.hpp"
#include "support/Modifier.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace quillane::testing {

/// What every EventTap promises. The driver is constructed for each test, with a right-to-left input source in use and
/// an application in front that takes text, and has:
///
///     EventTap& tap();
///     void press(core::KeyCode), release(core::KeyCode);
///     void press(fakes::Modifier), release(fakes::Modifier);
///     void click();                            // the left button
///     void scroll();
///     std::u16string text();                   // what the application in front has got
///     std::u16string ownText(core::KeyCode);   // what the key types with Shift when nobody touches it
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class EventTapContract : public ::testing::Test {
protected:
    void SetUp() override { skipWhatIsLacking(driver); }

    using Modifier = fakes::Modifier;

    static constexpr std::array allTypes{EventType::flagsChanged,  EventType::keyDown,        EventType::keyUp,
                                         EventType::leftMouseDown, EventType::rightMouseDown, EventType::otherMouseDown,
                                         EventType::scrollWheel};

    static std::uint64_t maskOf(std::span<const EventType> types) {
        std::uint64_t mask = 0;
        for (const auto type : types) {
            mask |= maskBit(type);
        }
        return mask;
    }

    /// Starts the tap for the types, and keeps what it receives.
    [[nodiscard]] bool start(std::span<const EventType> types = allTypes) {
        return driver.tap().start(maskOf(types), [this](InputEvent& event) { received.push_back(event); });
    }

    [[nodiscard]] bool waitForCount(std::size_t count) {
        return driver.waitUntil([&] { return received.size() >= count; });
    }

    void type(core::KeyCode key) {
        driver.press(key);
        driver.release(key);
    }

    std::vector<InputEvent> received; // before the driver: the tap is gone when it goes
    Driver driver;
};

TYPED_TEST_SUITE_P(EventTapContract);

TYPED_TEST_P(EventTapContract, IsEnabledFromStartToStop) {
    EXPECT_FALSE(this->driver.tap().isEnabled());
    ASSERT_TRUE(this->start());
    EXPECT_TRUE(this->driver.tap().isEnabled());
    this->driver.tap().stop();
    EXPECT_FALSE(this->driver.tap().isEnabled());
}

TYPED_TEST_P(EventTapContract, EnablingWithoutATapDoesNothing) {
    this->driver.tap().enable();
    EXPECT_FALSE(this->driver.tap().isEnabled());
    this->driver.tap().stop();
    EXPECT_FALSE(this->driver.tap().isEnabled());
}

TYPED_TEST_P(EventTapContract, ReceivesPressAndReleaseWithTheKeyCode) {
    ASSERT_TRUE(this->start());
    this->type(1);
    this->type(46);
    ASSERT_TRUE(this->waitForCount(4));
    ASSERT_EQ(this->received.size(), 4U);
    constexpr std::array types{EventType::keyDown, EventType::keyUp, EventType::keyDown, EventType::keyUp};
    constexpr std::array<core::KeyCode, 4> keys{1, 1, 46, 46};
    for (std::size_t place = 0; place < types.size(); ++place) {
        EXPECT_EQ(this->received[place].type, types.at(place)) << place;
        EXPECT_EQ(this->received[place].keyCode, keys.at(place)) << place;
        EXPECT_EQ(this->received[place].replacementText, std::nullopt) << place;
    }
}

TYPED_TEST_P(EventTapContract, DistinguishesTheModifiersOfBothSides) {
    ASSERT_TRUE(this->start());
    for (const auto& key : fakes::modifierKeys) {
        if (key.modifier == fakes::Modifier::function) {
            continue; // not every keyboard has it
        }
        this->received.clear();
        this->driver.press(key.modifier);
        this->driver.release(key.modifier);
        ASSERT_TRUE(this->waitForCount(2)) << key.name;
        for (const auto& event : this->received) {
            EXPECT_EQ(event.type, EventType::flagsChanged) << key.name;
            EXPECT_EQ(event.keyCode, key.keyCode) << key.name;
        }
        EXPECT_EQ(this->received.front().flags & ~core::flags::capsLock, key.common | key.own) << key.name;
        EXPECT_EQ(this->received.back().flags & ~core::flags::capsLock, 0U) << key.name;
    }
}

TYPED_TEST_P(EventTapContract, KeysCarryTheModifiersThatAreHeld) {
    ASSERT_TRUE(this->start());
    this->driver.press(fakes::Modifier::leftControl);
    this->type(1);
    this->driver.release(fakes::Modifier::leftControl);
    ASSERT_TRUE(this->waitForCount(4));
    for (const std::size_t place : {1U, 2U}) {
        EXPECT_EQ(this->received[place].flags & ~core::flags::capsLock,
                  core::flags::control | core::flags::leftControl);
    }
}

TYPED_TEST_P(EventTapContract, ReceivesClicksAndScrolling) {
    ASSERT_TRUE(this->start());
    this->driver.click();
    ASSERT_TRUE(this->waitForCount(1));
    EXPECT_EQ(this->received.front().type, EventType::leftMouseDown);
    this->driver.scroll();
    ASSERT_TRUE(this->waitForCount(2));
    EXPECT_EQ(this->received[1].type, EventType::scrollWheel);
}

TYPED_TEST_P(EventTapContract, ReceivesOnlyTheTypesOfTheMask) {
    constexpr std::array types{EventType::keyDown};
    ASSERT_TRUE(this->start(types));
    this->driver.press(fakes::Modifier::rightControl);
    this->driver.release(fakes::Modifier::rightControl);
    this->driver.click();
    this->type(1);
    this->type(2);
    ASSERT_TRUE(this->waitForCount(2));
    ASSERT_EQ(this->received.size(), 2U);
    EXPECT_EQ(this->received[0].keyCode, 1);
    EXPECT_EQ(this->received[1].keyCode, 2);
}

TYPED_TEST_P(EventTapContract, NothingIsReceivedBetweenStopAndStart) {
    ASSERT_TRUE(this->start());
    this->driver.tap().stop();
    this->type(1);
    ASSERT_TRUE(this->start()) << "a tap can be made again";
    this->type(2);
    ASSERT_TRUE(this->waitForCount(2));
    ASSERT_EQ(this->received.size(), 2U);
    EXPECT_EQ(this->received.front().keyCode, 2);
}

TYPED_TEST_P(EventTapContract, ReplacedTextReachesTheApplication) {
    constexpr std::array<core::KeyCode, 2> replaceable{0, 1};
    this->driver.tap().setReplaceableKeys(replaceable);
    std::size_t count = 0;
    const auto replaceFirst = [&](InputEvent& event) {
        if (event.keyCode == 0) {
            event.replacementText = u'a';
        }
        ++count;
    };
    ASSERT_TRUE(this->driver.tap().start(this->maskOf(this->allTypes), replaceFirst));
    this->driver.press(fakes::Modifier::leftShift);
    this->type(0);
    this->type(1);
    this->type(0);
    this->driver.release(fakes::Modifier::leftShift);
    const auto expected = u"a" + this->driver.ownText(1) + u"a";
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.text() == expected; }));
    EXPECT_TRUE(this->driver.waitUntil([&] { return count >= 8; })) << "each press and release is received";
    EXPECT_EQ(count, 8U) << "what the tap types itself is not received";
}

TYPED_TEST_P(EventTapContract, KeysThatAreHeldBackReachTheApplicationInOrderWhenLetGo) {
    constexpr std::array<core::KeyCode, 1> replaceable{0};
    auto& tap = this->driver.tap();
    tap.setReplaceableKeys(replaceable);
    std::size_t count = 0;
    const auto replaceFirst = [&](InputEvent& event) {
        if (event.keyCode == 0) {
            event.replacementText = u'a';
        }
        ++count;
    };
    ASSERT_TRUE(tap.start(this->maskOf(this->allTypes), replaceFirst));
    tap.hold();
    EXPECT_TRUE(tap.isHolding());
    this->driver.press(fakes::Modifier::leftShift);
    this->type(1);
    this->type(0);
    this->type(1);
    this->type(1);
    this->driver.release(fakes::Modifier::leftShift);
    EXPECT_TRUE(this->driver.waitUntil([&] { return count >= 10; })) << "each press and release is received at once";
    EXPECT_EQ(this->driver.text(), u"");
    tap.letGo();
    EXPECT_FALSE(tap.isHolding());
    const auto own = this->driver.ownText(1);
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.text() == own + u"a" + own + own; }));
    EXPECT_EQ(count, 10U) << "what was held back is not received again";
    this->driver.press(fakes::Modifier::leftShift);
    this->type(1);
    this->driver.release(fakes::Modifier::leftShift);
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.text() == own + u"a" + own + own + own; }));
}

TYPED_TEST_P(EventTapContract, LetsGoWhenNothingWasTyped) {
    ASSERT_TRUE(this->start());
    this->driver.tap().hold();
    this->driver.tap().letGo();
    this->driver.tap().letGo();
    this->driver.press(fakes::Modifier::leftShift);
    this->type(1);
    this->driver.release(fakes::Modifier::leftShift);
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.text() == this->driver.ownText(1); }));
}

TYPED_TEST_P(EventTapContract, HoldsNothingBackWithoutATap) {
    this->driver.tap().hold();
    EXPECT_FALSE(this->driver.tap().isHolding());
    ASSERT_TRUE(this->start());
    this->driver.tap().hold();
    this->driver.tap().stop();
    EXPECT_FALSE(this->driver.tap().isHolding());
}

REGISTER_TYPED_TEST_SUITE_P(EventTapContract, IsEnabledFromStartToStop, EnablingWithoutATapDoesNothing,
                            ReceivesPressAndReleaseWithTheKeyCode, DistinguishesTheModifiersOfBothSides,
                            KeysCarryTheModifiersThatAreHeld, ReceivesClicksAndScrolling, ReceivesOnlyTheTypesOfTheMask,
                            NothingIsReceivedBetweenStopAndStart, ReplacedTextReachesTheApplication,
                            KeysThatAreHeldBackReachTheApplicationInOrderWhenLetGo, LetsGoWhenNothingWasTyped,
                            HoldsNothingBackWithoutATap);

} // namespace quillane::testing

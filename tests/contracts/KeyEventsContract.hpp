// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "contracts/Lacking.hpp"
#include "platform/KeyEvents.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every KeyEvents promises. The driver is constructed for each test and has:
///
///     KeyEvents& events();
///     pid_t target();                                        // an application in front that takes keys
///     void holdShift(); void releaseShift();                 // as the user does, the left one
///     bool waitUntil(std::function<bool()>);                 // lets the world go on; false when it takes too long
///     std::size_t pressesOf(core::KeyCode keyCode);          // so far, with whatever modifiers
template <typename Driver>
class KeyEventsContract : public ::testing::Test {
protected:
    void SetUp() override { skipWhatIsLacking(driver); }

    static constexpr core::KeyCode keyV = 9;
    static constexpr core::KeyCode keyLeftShift = 56;
    Driver driver;
};

TYPED_TEST_SUITE_P(KeyEventsContract);

TYPED_TEST_P(KeyEventsContract, FlagsAreThoseThatAreHeld) {
    const auto isShiftHeld = [&] { return (this->driver.events().currentFlags() & core::flags::shift) != 0; };
    EXPECT_FALSE(isShiftHeld());
    this->driver.holdShift();
    EXPECT_TRUE(this->driver.waitUntil(isShiftHeld));
    this->driver.releaseShift();
    EXPECT_TRUE(this->driver.waitUntil([&] { return !isShiftHeld(); }));
}

TYPED_TEST_P(KeyEventsContract, AKeyIsDownUntilItIsReleased) {
    const auto isShiftDown = [&] { return this->driver.events().isKeyDown(this->keyLeftShift); };
    EXPECT_FALSE(isShiftDown());
    this->driver.holdShift();
    EXPECT_TRUE(this->driver.waitUntil(isShiftDown));
    EXPECT_FALSE(this->driver.events().isKeyDown(this->keyV));
    this->driver.releaseShift();
    EXPECT_TRUE(this->driver.waitUntil([&] { return !isShiftDown(); }));
}

TYPED_TEST_P(KeyEventsContract, APostedKeyIsPressedOnceAndHoldsNothingAfterwards) {
    ASSERT_TRUE(this->driver.events().postKey(this->driver.target(), this->keyV, core::flags::command));
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.pressesOf(this->keyV) == 1; }));
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.events().currentFlags() == 0; }));
    EXPECT_EQ(this->driver.pressesOf(this->keyV), 1U);
}

REGISTER_TYPED_TEST_SUITE_P(KeyEventsContract, FlagsAreThoseThatAreHeld, AKeyIsDownUntilItIsReleased,
                            APostedKeyIsPressedOnceAndHoldsNothingAfterwards);

} // namespace quillane::testing

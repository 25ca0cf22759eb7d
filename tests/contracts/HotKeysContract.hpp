// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "contracts/Lacking.hpp"
#include "platform/HotKeys.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace quillane::testing {

/// What every HotKeys promises. The driver is constructed for each test and has:
///
///     HotKeys& hotKeys();
///     void press();                            // the user presses and releases the key of `hotKey`
///     void takeByAnother();                    // another program registers `hotKey`
///     void giveBack();                         // and unregisters it
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
///     void settle();                           // lets everything arrive that is on its way
template <typename Driver>
class HotKeysContract : public ::testing::Test {
protected:
    void SetUp() override { skipWhatIsLacking(driver); }

    static constexpr HotKey hotKey{9, core::flags::command | core::flags::shift};

    [[nodiscard]] core::Subscription registerHere() {
        return driver.hotKeys().registerHotKey(
            hotKey, [this] { ++presses; }, [this] { ++taken; });
    }

    Driver driver;
    int presses = 0;
    int taken = 0;
};

TYPED_TEST_SUITE_P(HotKeysContract);

TYPED_TEST_P(HotKeysContract, EachPressIsReported) {
    const auto token = this->registerHere();
    this->driver.settle();
    this->driver.press();
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->presses == 1; }));
    this->driver.press();
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->presses == 2; }));
    EXPECT_EQ(this->taken, 0);
}

TYPED_TEST_P(HotKeysContract, WithoutTheTokenNothingIsReported) {
    {
        const auto token = this->registerHere();
        this->driver.settle();
    }
    this->driver.settle();
    this->driver.press();
    this->driver.settle();
    EXPECT_EQ(this->presses, 0);
}

TYPED_TEST_P(HotKeysContract, AKeyOfAnotherProgramIsReportedOnceAndAfterTheCall) {
    this->driver.takeByAnother();
    const auto token = this->registerHere();
    EXPECT_EQ(this->taken, 0);
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->taken == 1; }));
    this->driver.press();
    this->driver.settle();
    EXPECT_EQ(this->presses, 0);
    EXPECT_EQ(this->taken, 1);
}

TYPED_TEST_P(HotKeysContract, ALaterRegistrationHasAKeyThatWasGivenBack) {
    this->driver.takeByAnother();
    auto token = this->registerHere();
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->taken == 1; }));
    this->driver.giveBack();
    token.cancel();
    token = this->registerHere();
    this->driver.settle();
    this->driver.press();
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->presses == 1; }));
    EXPECT_EQ(this->taken, 1);
}

TYPED_TEST_P(HotKeysContract, TheHandlerMayUnregister) {
    core::Subscription token;
    token = this->driver.hotKeys().registerHotKey(
        this->hotKey,
        [&] {
            ++this->presses;
            token.cancel();
        },
        [] {});
    this->driver.settle();
    this->driver.press();
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->presses == 1; }));
    this->driver.press();
    this->driver.settle();
    EXPECT_EQ(this->presses, 1);
}

REGISTER_TYPED_TEST_SUITE_P(HotKeysContract, EachPressIsReported, WithoutTheTokenNothingIsReported,
                            AKeyOfAnotherProgramIsReportedOnceAndAfterTheCall,
                            ALaterRegistrationHasAKeyThatWasGivenBack, TheHandlerMayUnregister);

} // namespace quillane::testing

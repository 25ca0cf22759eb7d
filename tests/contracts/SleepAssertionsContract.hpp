// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"

#include <gtest/gtest.h>

#include <set>

namespace quillane::testing {

/// What every SleepAssertionClient promises. The driver is constructed for each test and has:
///
///     core::SleepAssertionClient& client();
///     bool holds(std::multiset<core::SleepAssertionKind>);    // seen from outside, within a second: exactly these
template <typename Driver>
class SleepAssertionsContract : public ::testing::Test {
protected:
    core::SleepAssertionID created(core::SleepAssertionKind kind) {
        const auto made = driver.client().create(kind);
        const auto* id = std::get_if<core::SleepAssertionID>(&made);
        EXPECT_NE(id, nullptr) << "code " << (id != nullptr ? 0 : std::get<core::SleepAssertionError>(made).code);
        return id != nullptr ? *id : 0;
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(SleepAssertionsContract);

TYPED_TEST_P(SleepAssertionsContract, EachKindIsHeldUntilItIsReleased) {
    EXPECT_TRUE(this->driver.holds({}));
    const auto system = this->created(core::SleepAssertionKind::system);
    EXPECT_TRUE(this->driver.holds({core::SleepAssertionKind::system}));
    const auto display = this->created(core::SleepAssertionKind::display);
    EXPECT_NE(system, display);
    EXPECT_TRUE(this->driver.holds({core::SleepAssertionKind::system, core::SleepAssertionKind::display}));
    this->driver.client().release(system);
    EXPECT_TRUE(this->driver.holds({core::SleepAssertionKind::display}));
    this->driver.client().release(display);
    EXPECT_TRUE(this->driver.holds({}));
}

TYPED_TEST_P(SleepAssertionsContract, ANumberThatStandsForNoneIsPassedOver) {
    const auto system = this->created(core::SleepAssertionKind::system);
    this->driver.client().release(system + 1000);
    EXPECT_TRUE(this->driver.holds({core::SleepAssertionKind::system}));
    this->driver.client().release(system);
    this->driver.client().release(system);
    EXPECT_TRUE(this->driver.holds({}));
}

TYPED_TEST_P(SleepAssertionsContract, MayBeHeldAgain) {
    for (int round = 0; round < 3; ++round) {
        const auto display = this->created(core::SleepAssertionKind::display);
        EXPECT_TRUE(this->driver.holds({core::SleepAssertionKind::display}));
        this->driver.client().release(display);
        EXPECT_TRUE(this->driver.holds({}));
    }
}

REGISTER_TYPED_TEST_SUITE_P(SleepAssertionsContract, EachKindIsHeldUntilItIsReleased,
                            ANumberThatStandsForNoneIsPassedOver, MayBeHeldAgain);

} // namespace quillane::testing

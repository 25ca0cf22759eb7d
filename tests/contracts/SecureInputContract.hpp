// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SecureInput.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every SecureInput promises. The driver is constructed for each test and has:
///
///     SecureInput& input();
///     void beginPassword();   // the user goes to a password field
///     void endPassword();     // and on to another one
template <typename Driver>
class SecureInputContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(SecureInputContract);

TYPED_TEST_P(SecureInputContract, IsOnExactlyWhileAPasswordIsTyped) {
    EXPECT_FALSE(this->driver.input().isEnabled());
    this->driver.beginPassword();
    EXPECT_TRUE(this->driver.input().isEnabled());
    EXPECT_TRUE(this->driver.input().isEnabled());
    this->driver.endPassword();
    EXPECT_FALSE(this->driver.input().isEnabled());
}

TYPED_TEST_P(SecureInputContract, IsKnownWhereverTheFocusIsAnnounced) {
    EXPECT_TRUE(this->driver.input().isKnown());
    this->driver.beginPassword();
    EXPECT_TRUE(this->driver.input().isKnown());
}

REGISTER_TYPED_TEST_SUITE_P(SecureInputContract, IsOnExactlyWhileAPasswordIsTyped, IsKnownWhereverTheFocusIsAnnounced);

} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LoginItemService.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every LoginItemService promises. The driver is constructed for each test, not registered, and has
/// `LoginItemService& service()`.
template <typename Driver>
class LoginItemContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(LoginItemContract);

TYPED_TEST_P(LoginItemContract, IsOffAtFirstAndFollowsRequests) {
    auto& service = this->driver.service();
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(service.enable());
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);
    ASSERT_TRUE(service.disable());
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
}

TYPED_TEST_P(LoginItemContract, AskingTwiceSucceeds) {
    auto& service = this->driver.service();
    ASSERT_TRUE(service.enable());
    ASSERT_TRUE(service.enable());
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);
    ASSERT_TRUE(service.disable());
    ASSERT_TRUE(service.disable());
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
}

REGISTER_TYPED_TEST_SUITE_P(LoginItemContract, IsOffAtFirstAndFollowsRequests, AskingTwiceSucceeds);

} // namespace quillane::testing

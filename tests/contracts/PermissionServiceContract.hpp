// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PermissionService.hpp"

#include <gtest/gtest.h>

#include <array>

namespace quillane::testing {

/// What every PermissionService promises. The driver is constructed for each test and has:
///
///     PermissionService& service();
///     bool set(core::MacPermission, bool granted); // grants or takes away, as the user does; false when nobody can
///     bool waitUntil(std::function<bool()>);       // lets the world go on; false when it takes too long
template <typename Driver>
class PermissionServiceContract : public ::testing::Test {
protected:
    static constexpr std::array all{core::MacPermission::inputMonitoring, core::MacPermission::accessibility};

    [[nodiscard]] bool isGranted(core::MacPermission permission) { return driver.service().isGranted(permission); }

    [[nodiscard]] bool waitUntilGranted(core::MacPermission permission, bool granted) {
        return driver.waitUntil([&] { return isGranted(permission) == granted; });
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(PermissionServiceContract);

TYPED_TEST_P(PermissionServiceContract, GrantsAndRevocationsAreSeen) {
    for (const auto permission : this->all) {
        if (!this->driver.set(permission, false)) {
            continue; // it cannot be taken away here
        }
        EXPECT_TRUE(this->waitUntilGranted(permission, false));
        ASSERT_TRUE(this->driver.set(permission, true));
        EXPECT_TRUE(this->waitUntilGranted(permission, true));
        ASSERT_TRUE(this->driver.set(permission, false));
        EXPECT_TRUE(this->waitUntilGranted(permission, false));
    }
}

TYPED_TEST_P(PermissionServiceContract, ReadingTheStateChangesNothing) {
    for (const auto permission : this->all) {
        if (this->driver.set(permission, false)) {
            ASSERT_TRUE(this->waitUntilGranted(permission, false));
        }
        const bool before = this->isGranted(permission);
        int answers = 0;
        EXPECT_TRUE(this->driver.waitUntil([&] { return this->isGranted(permission) != before || ++answers > 20; }));
        EXPECT_EQ(this->isGranted(permission), before);
    }
}

TYPED_TEST_P(PermissionServiceContract, ARequestGrantsUnlessTheUserGrantsInSettings) {
    for (const auto permission : this->all) {
        if (!this->driver.set(permission, false)) {
            continue;
        }
        ASSERT_TRUE(this->waitUntilGranted(permission, false));
        this->driver.service().request(permission);
        EXPECT_TRUE(this->waitUntilGranted(permission, !this->driver.service().isGrantedInSettings()));
    }
}

TYPED_TEST_P(PermissionServiceContract, OnePermissionIsNotTheOther) {
    const auto [monitoring, accessibility] = this->all;
    if (!this->driver.set(accessibility, false)) {
        GTEST_SKIP() << "no permission can be taken away here";
    }
    ASSERT_TRUE(this->waitUntilGranted(accessibility, false));
    const bool before = this->isGranted(monitoring);
    ASSERT_TRUE(this->driver.set(accessibility, true));
    ASSERT_TRUE(this->waitUntilGranted(accessibility, true));
    EXPECT_EQ(this->isGranted(monitoring), before);
}

TYPED_TEST_P(PermissionServiceContract, APageThatTheSettingsLackIsNotShown) {
    for (const auto permission : this->all) {
        auto& service = this->driver.service();
        EXPECT_TRUE(service.hasSettings(permission) || !service.isGrantedInSettings()) << "nowhere to grant it";
        if (!service.hasSettings(permission)) {
            EXPECT_FALSE(service.openSettings(permission));
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(PermissionServiceContract, GrantsAndRevocationsAreSeen, ReadingTheStateChangesNothing,
                            ARequestGrantsUnlessTheUserGrantsInSettings, OnePermissionIsNotTheOther,
                            APageThatTheSettingsLackIsNotShown);

} // namespace quillane::testing

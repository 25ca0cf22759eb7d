// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UpdaterService.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every UpdaterService promises. The driver is constructed for each test, with an updater that has not been
/// started and has never checked, and has:
///
///     UpdaterService& updater();
///     int checks();                            // that have begun so far
///     void finish(core::Date);                 // the check that runs comes to its end then
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class UpdaterServiceContract : public ::testing::Test {
protected:
    [[nodiscard]] bool waitForChange() {
        return driver.waitUntil([&] { return changes > 0; });
    }

    void SetUp() override {
        token = driver.updater().onChanged([this] { ++changes; });
    }

    Driver driver;
    int changes = 0;
    core::Subscription token;
};

TYPED_TEST_SUITE_P(UpdaterServiceContract);

TYPED_TEST_P(UpdaterServiceContract, NothingIsCheckedBeforeItIsAsked) {
    EXPECT_TRUE(this->driver.updater().hasKey());
    EXPECT_EQ(this->driver.checks(), 0);
    EXPECT_EQ(this->driver.updater().lastCheck(), std::nullopt);
    this->driver.updater().start();
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->driver.updater().canCheck(); }));
    EXPECT_EQ(this->driver.checks(), 0);
}

TYPED_TEST_P(UpdaterServiceContract, ACheckIsAnnouncedWhenItBeginsAndWhenItEnds) {
    auto& updater = this->driver.updater();
    updater.start();
    ASSERT_TRUE(this->driver.waitUntil([&] { return updater.canCheck(); }));
    this->changes = 0;
    updater.checkForUpdates();
    EXPECT_EQ(this->driver.checks(), 1);
    EXPECT_TRUE(this->waitForChange());
    EXPECT_FALSE(updater.canCheck());
    this->changes = 0;
    this->driver.finish({1000});
    EXPECT_TRUE(this->waitForChange());
    EXPECT_TRUE(this->driver.waitUntil([&] { return updater.canCheck(); }));
    EXPECT_EQ(updater.lastCheck(), core::Date{1000});
}

TYPED_TEST_P(UpdaterServiceContract, TheSwitchIsKeptAndAnnounced) {
    auto& updater = this->driver.updater();
    updater.start();
    for (const bool automatically : {false, true}) {
        this->changes = 0;
        updater.setChecksAutomatically(automatically);
        EXPECT_TRUE(this->waitForChange());
        EXPECT_EQ(updater.checksAutomatically(), automatically);
    }
}

TYPED_TEST_P(UpdaterServiceContract, WithoutTheTokenNothingIsAnnounced) {
    auto& updater = this->driver.updater();
    updater.start();
    ASSERT_TRUE(this->driver.waitUntil([&] { return updater.canCheck(); }));
    this->token.cancel();
    this->changes = 0;
    int kept = 0;
    const auto other = updater.onChanged([&] { ++kept; });
    updater.setChecksAutomatically(!updater.checksAutomatically());
    EXPECT_TRUE(this->driver.waitUntil([&] { return kept > 0; }));
    EXPECT_EQ(this->changes, 0);
}

REGISTER_TYPED_TEST_SUITE_P(UpdaterServiceContract, NothingIsCheckedBeforeItIsAsked,
                            ACheckIsAnnouncedWhenItBeginsAndWhenItEnds, TheSwitchIsKeptAndAnnounced,
                            WithoutTheTokenNothingIsAnnounced);

} // namespace quillane::testing

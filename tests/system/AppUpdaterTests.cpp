// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "system/AppUpdater.hpp"

#include "fakes/FakeUpdaterService.hpp"
#include "fakes/FakeWindowTraits.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

class AppUpdaterTest : public ::testing::Test {
protected:
    fakes::FakeUpdaterService service;
    fakes::FakeWindowTraits windows;
    AppUpdater updater{&service, windows, "1.2"};
};

TEST_F(AppUpdaterTest, StartsOnceAndNotByItself) {
    EXPECT_EQ(service.starts, 0);
    updater.start();
    updater.start();
    EXPECT_EQ(service.starts, 1);
}

TEST_F(AppUpdaterTest, ChecksInFrontAndNotWhileACheckRuns) {
    int changes = 0;
    const auto token = updater.onChanged([&] { ++changes; });
    updater.checkNow();
    updater.checkNow();
    EXPECT_EQ(service.checks, 1);
    EXPECT_EQ(windows.activations, 1);
    EXPECT_FALSE(updater.canCheck());
    service.finish({12});
    EXPECT_TRUE(updater.canCheck());
    EXPECT_EQ(updater.lastCheck(), core::Date{12});
    EXPECT_EQ(changes, 2);
}

TEST_F(AppUpdaterTest, TheSwitchIsTheUpdatersOwn) {
    updater.setChecksAutomatically(false);
    EXPECT_FALSE(service.automatic);
    EXPECT_FALSE(updater.checksAutomatically());
}

TEST_F(AppUpdaterTest, HasItsVersionAndUpdatesItself) {
    EXPECT_EQ(updater.version(), "1.2");
    EXPECT_EQ(updater.means(), AppUpdater::Means::itself);
    EXPECT_TRUE(updater.updatesItself());
    EXPECT_TRUE(updater.checksAutomatically());
}

TEST_F(AppUpdaterTest, WithoutAKeyNothingIsStartedOrChecked) {
    service.key = false;
    updater.start();
    updater.setChecksAutomatically(false);
    updater.checkNow();
    EXPECT_EQ(updater.means(), AppUpdater::Means::none);
    EXPECT_FALSE(updater.updatesItself());
    EXPECT_FALSE(updater.canCheck());
    EXPECT_FALSE(updater.checksAutomatically());
    EXPECT_EQ(service.starts, 0);
    EXPECT_EQ(service.checks, 0);
    EXPECT_TRUE(service.automatic);
    EXPECT_EQ(windows.activations, 0);
}

TEST_F(AppUpdaterTest, WithoutAServiceThereIsNothingToDo) {
    AppUpdater packaged(nullptr, windows, "");
    packaged.start();
    packaged.setChecksAutomatically(true);
    packaged.checkNow();
    EXPECT_EQ(packaged.means(), AppUpdater::Means::packageManager);
    EXPECT_FALSE(packaged.updatesItself());
    EXPECT_FALSE(packaged.canCheck());
    EXPECT_FALSE(packaged.checksAutomatically());
    EXPECT_EQ(packaged.lastCheck(), std::nullopt);
    EXPECT_EQ(packaged.version(), "–");
    EXPECT_EQ(windows.activations, 0);
}

} // namespace
} // namespace quillane

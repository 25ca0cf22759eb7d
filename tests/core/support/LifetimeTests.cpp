// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Lifetime.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace quillane::core {
namespace {

TEST(Lifetime, WatchIsTrueUntilTheObjectIsDestroyed) {
    std::optional<Lifetime> lifetime(std::in_place);
    const auto alive = lifetime->watch();
    EXPECT_TRUE(alive);
    lifetime.reset();
    EXPECT_FALSE(alive);
}

TEST(Lifetime, WatchIsFalseOnceItHasEnded) {
    Lifetime lifetime;
    const auto alive = lifetime.watch();
    lifetime.end();
    EXPECT_FALSE(alive);
    EXPECT_FALSE(lifetime.watch());
}

TEST(Lifetime, RestartEndsEarlierWatchesOnly) {
    Lifetime lifetime;
    const auto before = lifetime.watch();
    lifetime.restart();
    EXPECT_FALSE(before);
    EXPECT_TRUE(lifetime.watch());
}

TEST(Lifetime, OwnerOfARequestExpiresWithIt) {
    Lifetime lifetime;
    const std::weak_ptr<void> owner = lifetime;
    EXPECT_FALSE(owner.expired());
    lifetime.end();
    EXPECT_TRUE(owner.expired());
}

} // namespace
} // namespace quillane::core

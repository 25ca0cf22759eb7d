// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Listeners.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ListenersTest : public ::testing::Test {
protected:
    Subscription noting(int name) {
        return listeners_->subscribe([this, name](int value) { calls_.push_back(10 * name + value); });
    }

    std::optional<Listeners<int>> listeners_{std::in_place};
    std::vector<int> calls_;
};

TEST_F(ListenersTest, AreCalledInTheOrderOfSubscription) {
    const auto first = noting(1);
    const auto second = noting(2);
    listeners_->notify(5);
    listeners_->notify(6);
    EXPECT_THAT(calls_, ElementsAre(15, 25, 16, 26));
}

TEST_F(ListenersTest, DroppedTokenUnsubscribes) {
    EXPECT_TRUE(listeners_->empty());
    {
        const auto token = noting(1);
        EXPECT_FALSE(listeners_->empty());
    }
    EXPECT_TRUE(listeners_->empty());
    listeners_->notify(5);
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(ListenersTest, CallbackMayUnsubscribeItselfAndOthers) {
    Subscription first;
    Subscription second;
    first = listeners_->subscribe([&](int value) {
        calls_.push_back(value);
        first.cancel();
        second.cancel();
    });
    second = noting(2);
    const auto third = noting(3);
    listeners_->notify(5);
    listeners_->notify(6);
    EXPECT_THAT(calls_, ElementsAre(5, 35, 36));
}

TEST_F(ListenersTest, CallbackMaySubscribeAnother) {
    Subscription added;
    const auto first = listeners_->subscribe([&](int) { added = noting(2); });
    listeners_->notify(5);
    EXPECT_THAT(calls_, ElementsAre(25));
}

TEST_F(ListenersTest, CallbackMayDestroyTheList) {
    const auto first = listeners_->subscribe([&](int) { listeners_.reset(); });
    auto second = noting(2);
    listeners_->notify(5);
    EXPECT_THAT(calls_, ElementsAre(25));
    second.cancel(); // outlives the list
}

TEST(Subscription, UnsubscribesOnce) {
    int count = 0;
    {
        Subscription token([&] { ++count; });
        token.cancel();
        EXPECT_EQ(count, 1);
        token.cancel();
    }
    EXPECT_EQ(count, 1);
}

TEST(Subscription, MovedTokenLeavesNothingBehind) {
    int count = 0;
    Subscription token([&] { ++count; });
    {
        Subscription moved(std::move(token));
        EXPECT_EQ(count, 0);
    }
    EXPECT_EQ(count, 1);
}

TEST(Subscription, AssigningUnsubscribesTheOneBefore) {
    int first = 0;
    int second = 0;
    Subscription token([&] { ++first; });
    token = Subscription([&] { ++second; });
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    auto& itself = token;
    token = std::move(itself);
    EXPECT_EQ(second, 0);
}

} // namespace
} // namespace quillane::core

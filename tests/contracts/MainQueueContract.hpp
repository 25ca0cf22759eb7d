// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane::testing {

/// What every MainQueue promises. The driver is constructed for each test and has:
///
///     std::unique_ptr<MainQueue>& queue();
///     std::chrono::nanoseconds now();            // on the clock of the queue
///     bool waitUntil(std::function<bool()>);     // runs the queue until the condition holds; false when it takes too
///     long
template <typename Driver>
class MainQueueContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, PostedTasksRunInOrderAndNotInsideTheCall) {
    auto& queue = *this->driver.queue();
    std::string order;
    queue.post([&] {
        order += 'a';
        queue.post([&] { order += 'c'; });
        order += 'b';
    });
    EXPECT_EQ(order, "");
    EXPECT_TRUE(this->driver.waitUntil([&] { return order == "abc"; }));
}

TYPED_TEST_P(MainQueueContract, ADelayedTaskRunsOnceAndIsNeverEarly) {
    using namespace std::chrono_literals;
    for (const auto delay : {1ms, 15ms, 60ms}) {
        const auto start = this->driver.now();
        std::optional<std::chrono::nanoseconds> waited;
        int runs = 0;
        this->driver.queue()->postAfter(delay, [&] {
            ++runs;
            waited = this->driver.now() - start;
        });
        ASSERT_TRUE(this->driver.waitUntil([&] { return waited.has_value(); }));
        EXPECT_GE(*waited, delay);
        EXPECT_EQ(runs, 1);
    }
}

TYPED_TEST_P(MainQueueContract, TheSlowerOfTwoRepeatingTasksRunsTogetherWithTheFaster) {
    using namespace std::chrono_literals;
    std::vector<std::chrono::nanoseconds> fast;
    std::vector<std::chrono::nanoseconds> slow; ///< after the tick of the faster one before
    const auto first = this->driver.queue()->repeat(20ms, [&] { fast.push_back(this->driver.now()); });
    ASSERT_TRUE(this->driver.waitUntil([&] { return fast.size() == 1; }));
    core::Subscription second;
    this->driver.queue()->postAfter(10ms, [&] { // between two ticks of the faster one
        second = this->driver.queue()->repeat(80ms, [&] { slow.push_back(this->driver.now() - fast.back()); });
    });
    ASSERT_TRUE(this->driver.waitUntil([&] { return slow.size() == 8; }));
    EXPECT_LT(std::ranges::min(slow), 5ms); // a busy machine may separate the two at some of the ticks
}

TYPED_TEST_P(MainQueueContract, DroppingTheTokenEndsTheRepetition) {
    using namespace std::chrono_literals;
    int dropped = 0;
    auto token = this->driver.queue()->repeat(5ms, [&] { ++dropped; });
    ASSERT_TRUE(this->driver.waitUntil([&] { return dropped >= 2; }));
    token.cancel();
    const int before = dropped;
    int other = 0;
    const auto later = this->driver.queue()->repeat(5ms, [&] { ++other; });
    ASSERT_TRUE(this->driver.waitUntil([&] { return other >= 4; }));
    EXPECT_EQ(dropped, before);
}

TYPED_TEST_P(MainQueueContract, ARepeatingTaskMayEndItselfAndATokenMayOutliveTheQueue) {
    using namespace std::chrono_literals;
    int runs = 0;
    core::Subscription token;
    token = this->driver.queue()->repeat(5ms, [&] {
        ++runs;
        token.cancel();
    });
    int other = 0;
    const auto outliving = this->driver.queue()->repeat(5ms, [&] { ++other; });
    ASSERT_TRUE(this->driver.waitUntil([&] { return other >= 3; }));
    this->driver.queue().reset();
    EXPECT_EQ(runs, 1);
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, PostedTasksRunInOrderAndNotInsideTheCall,
                            ADelayedTaskRunsOnceAndIsNeverEarly, TheSlowerOfTwoRepeatingTasksRunsTogetherWithTheFaster,
                            DroppingTheTokenEndsTheRepetition, ARepeatingTaskMayEndItselfAndATokenMayOutliveTheQueue);

} // namespace quillane::testing

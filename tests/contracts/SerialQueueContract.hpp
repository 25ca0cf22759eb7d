// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SerialQueue.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane::testing {

/// What every SerialQueue promises. The driver is constructed for each test and has:
///
///     SerialQueue& queue();
template <typename Driver>
class SerialQueueContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(SerialQueueContract);

TYPED_TEST_P(SerialQueueContract, TasksRunInTheOrderOfPosting) {
    std::vector<int> order;
    for (int i = 0; i < 100; ++i) {
        this->driver.queue().post([&order, i] { order.push_back(i); });
    }
    this->driver.queue().wait();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    }
}

TYPED_TEST_P(SerialQueueContract, WaitIncludesTasksPostedByTasks) {
    int runs = 0;
    this->driver.queue().post([&] {
        ++runs;
        this->driver.queue().post([&] { ++runs; });
    });
    this->driver.queue().wait();
    EXPECT_EQ(runs, 2);
}

TYPED_TEST_P(SerialQueueContract, WaitingForNothingEndsAtOnce) {
    this->driver.queue().wait();
    this->driver.queue().wait();
}

REGISTER_TYPED_TEST_SUITE_P(SerialQueueContract, TasksRunInTheOrderOfPosting, WaitIncludesTasksPostedByTasks,
                            WaitingForNothingEndsAtOnce);

} // namespace quillane::testing

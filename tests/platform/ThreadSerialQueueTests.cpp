// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/ThreadSerialQueue.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

namespace quillane {
namespace {

TEST(ThreadSerialQueue, RunsTasksInOrderOnAnotherThread) {
    ThreadSerialQueue queue;
    std::vector<int> order;
    std::thread::id thread;
    for (int i = 0; i < 100; ++i) {
        queue.post([&order, &thread, i] {
            order.push_back(i);
            thread = std::this_thread::get_id();
        });
    }
    queue.wait();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    }
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(ThreadSerialQueue, WaitingForNothingEndsAtOnce) {
    ThreadSerialQueue queue;
    queue.wait();
}

TEST(ThreadSerialQueue, WhatATaskPostsIsWaitedForAsWell) {
    ThreadSerialQueue queue;
    std::atomic<int> runs = 0;
    queue.post([&] {
        ++runs;
        queue.post([&] { ++runs; });
    });
    queue.wait();
    EXPECT_EQ(runs, 2);
}

TEST(ThreadSerialQueue, GoesWhenEverythingHasRun) {
    std::atomic<int> runs = 0;
    const auto held = std::make_shared<int>();
    {
        ThreadSerialQueue queue;
        for (int i = 0; i < 10; ++i) {
            queue.post([&runs, held] { ++runs; });
        }
    }
    EXPECT_EQ(runs, 10);
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace quillane

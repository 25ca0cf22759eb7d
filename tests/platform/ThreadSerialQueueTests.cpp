// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/ThreadSerialQueue.hpp"

#include "platform/SerialQueueContract.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

namespace quillane {
namespace {

class ThreadSerialQueueDriver {
public:
    SerialQueue& queue() { return queue_; }

private:
    ThreadSerialQueue queue_;
};

TEST(ThreadSerialQueue, RunsTasksOnAnotherThread) {
    ThreadSerialQueue queue;
    std::thread::id thread;
    queue.post([&] { thread = std::this_thread::get_id(); });
    queue.wait();
    EXPECT_NE(thread, std::this_thread::get_id());
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

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Thread, SerialQueueContract, ThreadSerialQueueDriver);
} // namespace testing
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/ThreadSerialQueue.hpp"

#include "contracts/SerialQueueContract.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane {
namespace {

class ThreadSerialQueueDriver {
public:
    SerialQueue& queue() { return queue_; }

private:
    ThreadSerialQueue queue_;
};

class LeavingSerialQueueDriver {
public:
    SerialQueue& queue() { return queue_; }

private:
    ThreadSerialQueue queue_{ThreadSerialQueue::AtEnd::leaves};
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

/// A file on a disk that does not answer: opening it waits until `answer`.
class SilentFile {
public:
    SilentFile() { EXPECT_EQ(::mkfifo(path_.c_str(), 0600), 0); }

    void open() const { ::close(::open(path_.c_str(), O_RDONLY | O_CLOEXEC)); }

    /// False while nobody asks.
    [[nodiscard]] bool answer() const {
        const int opened = ::open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return opened >= 0 && ::close(opened) == 0;
    }

private:
    live::TemporaryFolder files_;
    std::filesystem::path path_ = files_.path() / "silent";
};

/// Asks until it is true, and not once more: asking may change the answer.
bool comesTrue(const std::function<bool()>& condition) {
    bool holds = condition();
    for (int turn = 0; turn < 5000 && !holds; ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        holds = condition();
    }
    return holds;
}

TEST(ThreadSerialQueue, ATaskThatHangsIsLeftBehind) {
    const auto file = std::make_shared<SilentFile>();
    const auto hasBegun = std::make_shared<std::atomic<bool>>(false);
    const auto hasRun = std::make_shared<std::atomic<bool>>(false);
    const auto dropped = std::make_shared<int>();
    const auto begin = std::chrono::steady_clock::now();
    {
        ThreadSerialQueue queue(ThreadSerialQueue::AtEnd::leaves);
        queue.post([file, hasBegun] {
            *hasBegun = true;
            file->open();
        });
        queue.post([hasRun, dropped] { *hasRun = true; });
        ASSERT_TRUE(comesTrue([&] { return hasBegun->load(); }));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, ThreadSerialQueue::leavingTimeout + std::chrono::seconds(2));
    EXPECT_EQ(dropped.use_count(), 1) << "what has not begun is dropped";
    EXPECT_GT(file.use_count(), 1) << "it did not hang";
    EXPECT_TRUE(comesTrue([&] { return file->answer(); }));
    EXPECT_TRUE(comesTrue([&] { return file.use_count() == 1; })) << "it ends on its own";
    EXPECT_FALSE(*hasRun);
}

TEST(ThreadSerialQueue, ATaskThatIsNearlyDoneIsWaitedForAllTheSame) {
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> isDone = false;
    {
        ThreadSerialQueue queue(ThreadSerialQueue::AtEnd::leaves);
        queue.post([&] {
            hasBegun = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            isDone = true;
        });
        ASSERT_TRUE(comesTrue([&] { return hasBegun.load(); }));
    }
    EXPECT_TRUE(isDone);
}

TEST(ThreadSerialQueue, RequiredWritesFinishHoweverLongTheyTake) {
    bool isDone = false;
    {
        ThreadSerialQueue queue;
        queue.post([&] { std::this_thread::sleep_for(ThreadSerialQueue::leavingTimeout * 2); });
        queue.post([&] { isDone = true; });
    }
    EXPECT_TRUE(isDone);
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Thread, SerialQueueContract, ThreadSerialQueueDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Leaving, SerialQueueContract, LeavingSerialQueueDriver);
} // namespace testing
} // namespace quillane

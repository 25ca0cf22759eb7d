// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/ThreadFileExaminer.hpp"

#include "contracts/FileExaminerContract.hpp"
#include "fakes/FakeMainQueue.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A disk whose threads wait while it is unreachable. Shared with them, because they may be left behind.
class Disk {
public:
    core::ExaminedFile examine(const core::Url& file) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !isAway_; });
        lock.unlock();
        ++asked_;
        return core::fileShareProtocol::examine(file);
    }

    void setAway(bool isAway) {
        const std::lock_guard lock(mutex_);
        isAway_ = isAway;
        changed_.notify_all();
    }

    [[nodiscard]] int asked() const { return asked_; }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isAway_ = false;
    std::atomic<int> asked_ = 0;
};

class ThreadFileExaminerDriver {
public:
    ~ThreadFileExaminerDriver() { comeBack(); }

    core::FileExaminer examiner() { return (isAway_ ? ordinary_ : generous_)->examiner(); }

    void goAway() {
        isAway_ = true;
        disk_->setAway(true);
    }

    void comeBack() {
        isAway_ = false;
        disk_->setAway(false);
    }

    bool waitUntil(const std::function<bool()>& condition) {
        const auto deadline = Clock::now() + 10s;
        while (!condition()) {
            if (Clock::now() > deadline) {
                return false;
            }
            queue_.runPosted();
            std::this_thread::yield();
        }
        return true;
    }

    /// As at the end of the program.
    void destroyExaminer() { ordinary_.reset(); }

    [[nodiscard]] fakes::FakeMainQueue& queue() { return queue_; }

    [[nodiscard]] Disk& disk() { return *disk_; }

private:
    [[nodiscard]] std::unique_ptr<ThreadFileExaminer> make(ThreadFileExaminer::Limits limits) {
        return std::make_unique<ThreadFileExaminer>(
            queue_, [disk = disk_](const core::Url& file) { return disk->examine(file); }, limits);
    }

    fakes::FakeMainQueue queue_;
    std::shared_ptr<Disk> disk_ = std::make_shared<Disk>();
    bool isAway_ = false;
    /// Waits for a disk that answers, however busy the machine is.
    std::unique_ptr<ThreadFileExaminer> generous_ = make({.moment = 10s});
    std::unique_ptr<ThreadFileExaminer> ordinary_ = make({});
};

class ThreadFileExaminerTest : public ::testing::Test {
protected:
    void examine(const core::Url& file) {
        driver_.examiner()(file, [this](const core::ExaminedFile& answer) { answers_.push_back(answer); });
    }

    /// Asks a disk that is away.
    void examineInVain() {
        driver_.goAway();
        const auto begin = Clock::now();
        examine(files_.url("file.txt"));
        EXPECT_GE(Clock::now() - begin, ThreadFileExaminer::Limits{}.moment);
        EXPECT_LT(Clock::now() - begin, 5s); // and not for as long as the disk is away
        EXPECT_TRUE(answers_.empty());
    }

    ThreadFileExaminerDriver driver_;
    live::TemporaryFolder files_;
    std::vector<core::ExaminedFile> answers_;
};

TEST_F(ThreadFileExaminerTest, DiskThatHangsDoesNotHoldUpAnotherFile) {
    const auto hung = std::make_shared<Disk>();
    hung->setAway(true);
    const auto away = files_.url("away.txt");
    ThreadFileExaminer examiner(driver_.queue(),
                                [hung, away](const core::Url& file) {
                                    return file == away ? hung->examine(file) : core::fileShareProtocol::examine(file);
                                },
                                {});
    const auto keep = [this](const core::ExaminedFile& answer) { answers_.push_back(answer); };
    examiner.examiner()(away, keep);
    EXPECT_TRUE(answers_.empty());
    examiner.examiner()(files_.url("here.txt", "123"), keep);
    ASSERT_TRUE(driver_.waitUntil([this] { return answers_.size() == 1; }));
    EXPECT_EQ(answers_[0]->size, 3U);
    hung->setAway(false);
    EXPECT_TRUE(driver_.waitUntil([this] { return answers_.size() == 2; }));
}

TEST_F(ThreadFileExaminerTest, DiskThatNeverAnswersMakesTheFileUnreadable) {
    examineInVain();
    driver_.queue().advance(ThreadFileExaminer::Limits{}.timeout - 1ms);
    EXPECT_TRUE(answers_.empty());
    driver_.queue().advance(1ms);
    ASSERT_EQ(answers_.size(), 1U);
    EXPECT_EQ(answers_[0], core::ExaminedFile(tl::unexpected(core::FileShareError::unreadableFile)));
    driver_.comeBack();
    ASSERT_TRUE(driver_.waitUntil([this] { return driver_.queue().postedCount() > 0 || driver_.disk().asked() == 1; }));
    driver_.queue().runPosted();
    EXPECT_EQ(answers_.size(), 1U);
}

TEST_F(ThreadFileExaminerTest, NothingComesOnceItIsGone) {
    examineInVain();
    driver_.destroyExaminer();
    driver_.comeBack();
    ASSERT_TRUE(driver_.waitUntil([this] { return driver_.disk().asked() == 1; }));
    driver_.queue().runPosted();
    EXPECT_TRUE(answers_.empty());
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Threads, FileExaminerContract, ThreadFileExaminerDriver);
} // namespace testing
} // namespace quillane

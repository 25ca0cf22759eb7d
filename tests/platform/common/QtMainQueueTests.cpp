// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/qt/QtMainQueue.hpp"

#include "contracts/MainQueueContract.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace quillane {
namespace {

using Clock = std::chrono::steady_clock;

class QtMainQueueDriver {
public:
    std::unique_ptr<MainQueue>& queue() { return queue_; }

    [[nodiscard]] std::chrono::nanoseconds now() const { return Clock::now().time_since_epoch(); }

    bool waitUntil(const std::function<bool()>& condition) {
        const auto deadline = Clock::now() + std::chrono::seconds(30);
        while (!condition()) {
            if (Clock::now() > deadline) {
                return false;
            }
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        }
        return true;
    }

private:
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QCoreApplication application_{argc_, &argv_};
    std::unique_ptr<MainQueue> queue_ = std::make_unique<QtMainQueue>();
};

TEST(QtMainQueue, PostFromAnotherThreadRunsOnTheMainThread) {
    QtMainQueueDriver driver;
    std::optional<std::thread::id> ranOn;
    std::thread other([&] { driver.queue()->post([&] { ranOn = std::this_thread::get_id(); }); });
    other.join();
    ASSERT_TRUE(driver.waitUntil([&] { return ranOn.has_value(); }));
    EXPECT_EQ(*ranOn, std::this_thread::get_id());
}

TEST(QtMainQueue, ARepeatingTaskMayEndTheQueue) {
    QtMainQueueDriver driver;
    const auto token = driver.queue()->repeat(std::chrono::milliseconds(5), [&] { driver.queue().reset(); });
    EXPECT_TRUE(driver.waitUntil([&] { return driver.queue() == nullptr; }));
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainQueueContract, QtMainQueueDriver);

} // namespace testing
} // namespace quillane

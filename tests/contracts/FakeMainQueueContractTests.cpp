// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/MainQueueContract.hpp"
#include "fakes/FakeMainQueue.hpp"

namespace quillane {
namespace {

class FakeMainQueueDriver {
public:
    std::unique_ptr<MainQueue>& queue() { return queue_; }

    [[nodiscard]] std::chrono::nanoseconds now() const { return fake_->now(); }

    bool waitUntil(const std::function<bool()>& condition) {
        using namespace std::chrono_literals;
        fake_->runPosted();
        for (int step = 0; !condition() && step < 5000; ++step) {
            fake_->advance(1ms);
        }
        return condition();
    }

private:
    std::unique_ptr<MainQueue> queue_ = std::make_unique<fakes::FakeMainQueue>();
    fakes::FakeMainQueue* fake_ = static_cast<fakes::FakeMainQueue*>(queue_.get());
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MainQueueContract, FakeMainQueueDriver);
} // namespace testing
} // namespace quillane

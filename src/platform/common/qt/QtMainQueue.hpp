// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.hpp"

#include <memory>

namespace quillane {

/// The main queue on Qt's event loop, which on macOS runs on the main run loop. Qt's application object must exist. All
/// repeating timers share one Qt timer, so that simultaneous ticks wake the process once.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;

    void post(Task task) override;
    void postAfter(std::chrono::milliseconds delay, Task task) override;
    core::Subscription repeat(std::chrono::milliseconds interval, Task task) override;

private:
    class Loop;
    std::unique_ptr<Loop> loop_;
};

} // namespace quillane

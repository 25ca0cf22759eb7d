// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.hpp"

#include <memory>

namespace quillane {

/// The main queue on Qt's event loop, which on macOS runs on the main run loop. The application object of Qt must
/// exist. All repeating timers share one timer of Qt's, so that ticks that fall together wake the process once.
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

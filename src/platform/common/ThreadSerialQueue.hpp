// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SerialQueue.hpp"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace quillane {

/// A queue with a thread of its own, which starts with the first task. What has been posted runs before it goes.
class ThreadSerialQueue final : public SerialQueue {
public:
    ~ThreadSerialQueue() override;

    void post(Task task) override;
    void wait() override;

private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool isRunningTask_ = false;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace quillane

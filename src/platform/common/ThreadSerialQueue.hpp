// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SerialQueue.hpp"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace quillane {

/// A queue with a thread of its own, which starts with the first task.
class ThreadSerialQueue final : public SerialQueue {
public:
    /// What happens to the tasks when the queue is destroyed.
    enum class AtEnd {
        finishes, ///< they run first
        leaves,   ///< those that have not begun are dropped, and a running one is left behind after a moment
    };

    /// How long a leaving queue waits for the running task.
    static constexpr std::chrono::milliseconds leavingTimeout{200};

    /// A task that is left behind ends with the process, or later than the rest of the program: it may touch only what
    /// it owns.
    explicit ThreadSerialQueue(AtEnd atEnd = AtEnd::finishes) : atEnd_(atEnd) {}

    ~ThreadSerialQueue() override;
    ThreadSerialQueue(const ThreadSerialQueue&) = delete;
    ThreadSerialQueue& operator=(const ThreadSerialQueue&) = delete;

    void post(Task task) override;
    void wait() override;

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<Task> tasks;
        bool isRunningTask = false;
        bool isEnding = false;
    };

    static void run(State& state);
    [[nodiscard]] bool leaves();

    const AtEnd atEnd_;
    std::shared_ptr<State> state_ = std::make_shared<State>(); // shared with the thread, which may be left behind
    std::thread thread_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/ThreadSerialQueue.hpp"

#include <utility>

namespace quillane {

ThreadSerialQueue::~ThreadSerialQueue() {
    const bool isLeftBehind = atEnd_ == AtEnd::leaves && leaves();
    {
        const std::lock_guard lock(state_->mutex);
        state_->isEnding = true;
    }
    state_->changed.notify_all();
    if (isLeftBehind) {
        thread_.detach();
    } else if (thread_.joinable()) {
        thread_.join();
    }
}

/// Drops tasks that have not begun; returns whether the running one takes too long.
bool ThreadSerialQueue::leaves() {
    std::deque<Task> dropped; // destroys what they hold outside the lock
    std::unique_lock lock(state_->mutex);
    dropped.swap(state_->tasks);
    const bool isDone = state_->changed.wait_for(lock, leavingTimeout, [this] { return !state_->isRunningTask; });
    lock.unlock();
    return !isDone;
}

void ThreadSerialQueue::post(Task task) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->tasks.push_back(std::move(task));
        if (!thread_.joinable()) {
            thread_ = std::thread([state = state_] { run(*state); });
        }
    }
    state_->changed.notify_all();
}

void ThreadSerialQueue::wait() {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait(lock, [this] { return state_->tasks.empty() && !state_->isRunningTask; });
}

void ThreadSerialQueue::run(State& state) {
    std::unique_lock lock(state.mutex);
    for (;;) {
        state.changed.wait(lock, [&] { return state.isEnding || !state.tasks.empty(); });
        if (state.tasks.empty()) {
            return;
        }
        auto task = std::exchange(state.tasks.front(), nullptr);
        state.tasks.pop_front();
        state.isRunningTask = true;
        lock.unlock();
        task();
        task = nullptr; // destroys what it holds before notifying the others
        lock.lock();
        state.isRunningTask = false;
        state.changed.notify_all();
    }
}

} // namespace quillane

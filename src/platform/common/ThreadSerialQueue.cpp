// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/common/ThreadSerialQueue.hpp"

#include <utility>

namespace quillane {

ThreadSerialQueue::~ThreadSerialQueue() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ThreadSerialQueue::post(Task task) {
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        if (!thread_.joinable()) {
            thread_ = std::thread([this] { run(); });
        }
    }
    changed_.notify_all();
}

void ThreadSerialQueue::wait() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return tasks_.empty() && !isRunningTask_; });
}

void ThreadSerialQueue::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isEnding_ || !tasks_.empty(); });
        if (tasks_.empty()) {
            return;
        }
        auto task = std::exchange(tasks_.front(), nullptr);
        tasks_.pop_front();
        isRunningTask_ = true;
        lock.unlock();
        task();
        task = nullptr; // what it holds goes before the others are told
        lock.lock();
        isRunningTask_ = false;
        changed_.notify_all();
    }
}

} // namespace quillane

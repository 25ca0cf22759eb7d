// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeMainQueue.hpp"

#include <stdexcept>
#include <string>
#include <utility>

namespace quillane::fakes {

void FakeMainQueue::post(Task task) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(task));
}

void FakeMainQueue::postAfter(std::chrono::milliseconds delay, Task task) {
    timers_.emplace(Due{now_ + std::max(delay, std::chrono::milliseconds::zero()), next_++},
                    Timer{std::make_shared<Task>(std::move(task)), {}});
}

core::Subscription FakeMainQueue::repeat(std::chrono::milliseconds interval, Task task) {
    if (interval <= std::chrono::milliseconds::zero()) {
        throw std::invalid_argument("A repeating timer needs an interval");
    }
    const auto name = std::to_string(interval.count()) + " ms timer";
    note(journal, name);
    const auto id = next_++;
    const Due due{(now_ / interval + 1) * interval, id};
    timers_.emplace(due, Timer{std::make_shared<Task>(std::move(task)), interval});
    repeating_.emplace(id, due);
    return core::Subscription([this, id, name, alive = lifetime_.watch()] {
        if (!alive) {
            return;
        }
        note(journal, "end of " + name);
        if (const auto found = repeating_.find(id); found != repeating_.end()) {
            timers_.erase(found->second);
            repeating_.erase(found);
        }
    });
}

void FakeMainQueue::runPosted() {
    constexpr int endless = 1'000'000;
    for (int count = 0; count < endless; ++count) {
        Task task;
        {
            const std::lock_guard lock(mutex_);
            if (posted_.empty()) {
                return;
            }
            task = std::move(posted_.front());
            posted_.pop_front();
        }
        task();
    }
    throw std::logic_error("The posted tasks post each other without end");
}

std::chrono::milliseconds FakeMainQueue::firing(std::chrono::milliseconds due) const {
    return nap_ == std::chrono::milliseconds::zero() ? due : (due + nap_ - std::chrono::milliseconds(1)) / nap_ * nap_;
}

void FakeMainQueue::advance(std::chrono::milliseconds time) {
    const auto end = now_ + time;
    runPosted();
    while (!timers_.empty() && firing(timers_.begin()->first.first) <= end) {
        const auto [due, timer] = *timers_.begin();
        timers_.erase(timers_.begin());
        now_ = std::max(now_, firing(due.first));
        if (timer.interval != std::chrono::milliseconds::zero()) {
            const Due next{(now_ / timer.interval + 1) * timer.interval, due.second}; // missed ticks are lost
            timers_.emplace(next, timer);
            repeating_[due.second] = next;
        }
        (*timer.task)();
        runPosted();
    }
    now_ = end;
}

std::size_t FakeMainQueue::postedCount() const {
    const std::lock_guard lock(mutex_);
    return posted_.size();
}

} // namespace quillane::fakes

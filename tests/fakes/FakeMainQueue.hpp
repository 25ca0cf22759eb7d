// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/MainQueue.hpp"
#include "support/Journal.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace quillane::fakes {

/// A main queue that runs nothing by itself: a test drains what was posted and moves the clock.
class FakeMainQueue final : public MainQueue {
public:
    void post(Task task) override;
    void postAfter(std::chrono::milliseconds delay, Task task) override;
    core::Subscription repeat(std::chrono::milliseconds interval, Task task) override;

    /// Runs everything posted, and what that posts, in order. Throws when the tasks never come to an end.
    void runPosted();

    /// Advances the clock and runs each delayed task and tick at its own time, after the tasks posted before it.
    void advance(std::chrono::milliseconds time);

    /// Timers are late and fire together from now on, only at multiples of the interval, as those of a program that
    /// nobody sees (App Nap, and timer coalescing). Posted tasks are not. Zero ends it.
    void nap(std::chrono::milliseconds interval) { nap_ = interval; }

    /// Tasks that were posted and have not run.
    [[nodiscard]] std::size_t postedCount() const;

    /// Delayed tasks and repeating timers that wait.
    [[nodiscard]] std::size_t timerCount() const { return timers_.size(); }

    /// Time since the queue was made.
    [[nodiscard]] std::chrono::milliseconds now() const { return now_; }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    struct Timer {
        std::shared_ptr<Task> task; // shared: the task may drop its own timer while it runs
        std::chrono::milliseconds interval{};
    };

    using Due = std::pair<std::chrono::milliseconds, std::uint64_t>;

    /// When a timer that is due at that time fires.
    [[nodiscard]] std::chrono::milliseconds firing(std::chrono::milliseconds due) const;

    mutable std::mutex mutex_; // guards posted_: post may come from any thread
    std::deque<Task> posted_;
    std::map<Due, Timer> timers_;
    std::map<std::uint64_t, Due> repeating_;
    std::uint64_t next_ = 0;
    std::chrono::milliseconds now_{};
    std::chrono::milliseconds nap_{};
    core::Lifetime lifetime_;
};

} // namespace quillane::fakes

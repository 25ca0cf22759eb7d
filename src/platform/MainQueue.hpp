// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"

#include <chrono>
#include <functional>

namespace quillane {

/// The main thread's queue. `post` may be called from any thread; everything else from the main thread.
class MainQueue {
public:
    using Task = std::function<void()>;

    virtual ~MainQueue() = default;

    /// Runs the task on the main thread after the current event, in the order of posting. Never runs it inside the
    /// call.
    virtual void post(Task task) = 0;

    /// Runs the task on the main thread once, not before the delay has passed.
    virtual void postAfter(std::chrono::milliseconds delay, Task task) = 0;

    /// Runs the task at every multiple of the interval on the monotonic clock, until the token is dropped. Timers whose
    /// intervals divide each other therefore wake the processor together. Ticks that were missed are not made up for.
    virtual core::Subscription repeat(std::chrono::milliseconds interval, Task task) = 0;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

namespace quillane {

/// A queue for work that blocks. Tasks run one after the other, in the order of posting, not on the main thread.
class SerialQueue {
public:
    using Task = std::function<void()>;

    virtual ~SerialQueue() = default;

    /// From any thread. Never runs the task inside the call.
    virtual void post(Task task) = 0;

    /// Waits until all posted tasks have run. Must not be called from a task.
    virtual void wait() = 0;
};

} // namespace quillane

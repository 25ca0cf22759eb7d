// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SerialQueue.hpp"

#include <deque>
#include <utility>

namespace quillane::fakes {

/// Tasks wait until a test runs them, or somebody waits for them.
class FakeSerialQueue final : public SerialQueue {
public:
    void post(Task task) override { tasks_.push_back(std::move(task)); }

    void wait() override {
        while (!tasks_.empty()) {
            const auto task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        }
    }

    [[nodiscard]] std::size_t count() const { return tasks_.size(); }

private:
    std::deque<Task> tasks_;
};

} // namespace quillane::fakes

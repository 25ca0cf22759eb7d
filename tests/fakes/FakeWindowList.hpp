// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowList.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// A screen on which a test opens, stacks and closes windows. It may answer late, as an X server does.
class FakeWindowList final : public WindowList {
public:
    void read(Handler handler) override {
        if (late) {
            waiting_.push_back(std::move(handler));
        } else {
            handler(windows_);
        }
    }

    /// Opens a window in front of the others.
    void open(OnScreenWindow window) { windows_.insert(windows_.begin(), window); }

    /// Closes every window of a program.
    void close(pid_t pid) {
        std::erase_if(windows_, [pid](const OnScreenWindow& window) { return window.pid == pid; });
    }

    /// Answers the questions that came while `late` was set.
    void answer() {
        for (auto& handler : std::exchange(waiting_, {})) {
            handler(windows_);
        }
    }

    bool late = false;

private:
    std::vector<OnScreenWindow> windows_;
    std::vector<Handler> waiting_;
};

} // namespace quillane::fakes

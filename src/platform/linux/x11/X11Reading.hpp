// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace quillane {

/// A read of the server's state that a notice calls for. At most one is outstanding; however often the state changes
/// meanwhile, it is read once more afterwards. So notices cost memory and requests only as fast as they are answered.
class X11Reading {
public:
    /// `send` sends the requests; the handler of the last answer calls `finish`.
    explicit X11Reading(std::function<void()> send) : send_(std::move(send)) {}

    void request() {
        if (std::exchange(outstanding_, true)) {
            changed_ = true;
        } else {
            send_();
        }
    }

    void finish() {
        outstanding_ = false;
        if (std::exchange(changed_, false)) {
            request();
        }
    }

    /// The outstanding answer will not come: the connection has been replaced.
    void abandon() { outstanding_ = changed_ = false; }

    [[nodiscard]] bool isOutstanding() const { return outstanding_; }

private:
    std::function<void()> send_;
    bool outstanding_ = false;
    bool changed_ = false;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include <sys/types.h>

namespace quillane {

/// The processes that did not answer a read in time. The system tells nobody when such a process answers again, so it
/// is left alone for ten times as long as was waited for it, at most a second: waiting for processes that hang costs
/// a tenth of the time at most. A read that may wait much longer than the failed one is tried all the same.
class MacSilentProcesses {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    explicit MacSilentProcesses(Now now) : now_(std::move(now)) {}

    [[nodiscard]] Clock::time_point now() const { return now_(); }

    /// Whether a read with this time-out in seconds may be tried; 0 is the system's own time-out.
    [[nodiscard]] bool mayAsk(pid_t pid, float timeout) const;

    /// The process has answered.
    void hasAnswered(pid_t pid) { silent_.erase(pid); }

    /// The process has not answered the read that began then.
    void hasNotAnswered(pid_t pid, Clock::time_point begin);

private:
    struct Silence {
        Clock::time_point end;
        std::chrono::duration<float> waited;
    };

    Now now_;
    std::map<pid_t, Silence> silent_;
};

} // namespace quillane

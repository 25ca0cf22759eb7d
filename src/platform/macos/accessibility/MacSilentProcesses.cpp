// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/accessibility/MacSilentProcesses.hpp"

#include <algorithm>

namespace quillane {

namespace {

constexpr MacSilentProcesses::Clock::duration maximumSilence = std::chrono::seconds(1);

} // namespace

bool MacSilentProcesses::mayAsk(pid_t pid, float timeout) const {
    const auto found = silent_.find(pid);
    return found == silent_.end() || now_() >= found->second.end ||
           std::chrono::duration<float>(timeout) > 2 * found->second.waited;
}

void MacSilentProcesses::hasNotAnswered(pid_t pid, Clock::time_point begin) {
    const auto now = now_();
    std::erase_if(silent_, [&](const auto& entry) { return now >= entry.second.end; });
    const auto waited = now - begin;
    silent_[pid] = {now + std::min(10 * waited, maximumSilence), waited};
}

} // namespace quillane

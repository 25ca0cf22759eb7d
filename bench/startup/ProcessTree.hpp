// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <sys/types.h>

namespace quillane::live {

/// What a process and all that it has started have used so far, from /proc.
struct ResourceUse {
    int processes = 0;
    std::uint64_t cpuNanoseconds = 0; ///< time on a processor, of all threads (schedstat)
    std::uint64_t wakeUps = 0;        ///< voluntary context switches: each is one wake-up
    std::uint64_t memoryKiB = 0;      ///< proportional share (Pss of smaps_rollup)
    std::uint64_t writtenKiB = 0;     ///< private and written to (Private_Dirty of smaps_rollup)
};

/// The process and its descendants. The time and the wake-ups of threads that have ended are not in it.
[[nodiscard]] ResourceUse resourceUseOf(pid_t process);

} // namespace quillane::live

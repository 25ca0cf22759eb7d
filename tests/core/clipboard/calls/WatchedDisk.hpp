// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// This program's own calls of the system take the place of those of the C library, for the vault too, which is linked
/// into it: what a save asks of the disk is written down, the disk may be slow, and its calls may fail.
namespace quillane::core::testing {

/// What happens instead of a call.
struct DiskFault {
    /// How long the disk fails.
    enum class Duration { once, always };

    static constexpr int shortWrite = -1; ///< in place of an error: one byte is written

    int at = 0;    ///< the number of the call that fails, from 0
    int error = 0; ///< errno, or `shortWrite`
    Duration duration = Duration::once;
};

struct Disk {
    std::vector<std::string> calls; ///< "rename TO", "remove NAME" or "flush", which is of a folder or a file
    std::chrono::milliseconds flushTime{0};
    std::optional<DiskFault> fault;
    int count = 0;                     ///< of the calls that may fail
    std::string failed;                ///< the name of the call that failed first
    std::optional<std::uint64_t> room; ///< in bytes that are free; none: what the file system says
};

/// Watches the disk as long as it lives.
class DiskWatch {
public:
    explicit DiskWatch(Disk& disk);
    ~DiskWatch();
    DiskWatch(const DiskWatch&) = delete;
    DiskWatch& operator=(const DiskWatch&) = delete;
};

} // namespace quillane::core::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quillane::live {

/// A place in a process's memory where bytes were found (proc(5): /proc/PID/smaps).
struct MemoryMatch {
    std::uintptr_t address = 0;
    std::string mapping;      ///< as "[heap]", or the path of a file; empty for anonymous memory
    bool isLocked = false;    ///< never written to swap
    bool isDumped = true;     ///< part of a core file
    std::string surroundings; ///< printable characters before and after
};

/// Where a process holds the bytes in readable memory, as a dump of it would show. None when this user may not look
/// into the process, or it has ended. Not for the calling process, whose copy of the bytes would be found too.
[[nodiscard]] std::optional<std::vector<MemoryMatch>> findInMemory(pid_t process, std::span<const std::byte> bytes);

/// Where it holds a text of the Basic Multilingual Plane, in any of the encodings UTF-8, UTF-16 and UTF-32. As above;
/// throws where that is none.
[[nodiscard]] std::vector<MemoryMatch> findTextInMemory(pid_t process, std::u16string_view text);

/// One line for each, for messages.
[[nodiscard]] std::string describe(const std::vector<MemoryMatch>& matches);

} // namespace quillane::live

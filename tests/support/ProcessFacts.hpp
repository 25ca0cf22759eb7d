// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

/// What /proc says of other processes (proc(5)).
namespace quillane::live {

/// The number after "name:", added up over all lines that begin with it; 0 without one.
[[nodiscard]] inline std::uint64_t processField(pid_t process, std::string_view file, std::string_view name) {
    std::ifstream lines("/proc/" + std::to_string(process) + "/" + std::string(file));
    std::uint64_t sum = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name) && line.find(':') != std::string::npos) {
            std::istringstream number(line.substr(line.find(':') + 1));
            std::uint64_t value = 0;
            number >> value;
            sum += value;
        }
    }
    return sum;
}

/// False once it has ended, even if nobody has waited for it yet.
[[nodiscard]] inline bool isAlive(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    const auto name = text.rfind(')');
    return name != std::string::npos && name + 2 < text.size() && text[name + 2] != 'Z';
}

/// Memory that no other process shares, in bytes.
[[nodiscard]] inline std::uint64_t privateMemoryOf(pid_t process) {
    return processField(process, "smaps_rollup", "Private_") * 1024;
}

/// Memory in use, in bytes.
[[nodiscard]] inline std::uint64_t residentMemoryOf(pid_t process) {
    return processField(process, "status", "VmRSS") * 1024;
}

/// How often its main thread has gone to sleep.
[[nodiscard]] inline std::uint64_t wakeUpsOf(pid_t process) {
    return processField(process, "status", "voluntary_ctxt_switches");
}

/// A living child that runs a program of this file name; 0 without one.
[[nodiscard]] inline pid_t childOf(pid_t parent, std::string_view program) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const auto name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        const auto process = static_cast<pid_t>(std::stoi(name));
        if (processField(process, "status", "PPid") == static_cast<std::uint64_t>(parent) && isAlive(process) &&
            std::filesystem::read_symlink(entry.path() / "exe", error).filename() == program) {
            return process;
        }
    }
    return 0;
}

} // namespace quillane::live

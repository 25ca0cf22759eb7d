// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Environment.hpp"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>
#include <tl/expected.hpp>

namespace quillane::live {

/// How to start a program.
struct Command {
    std::vector<std::string> arguments; ///< the program first; looked up in PATH when it has no slash
    Environment environment;            ///< all of it, nothing is inherited
    std::filesystem::path folder = "/"; ///< working folder
    std::filesystem::path output;       ///< file that standard output goes to; /dev/null when empty
    std::filesystem::path errors;       ///< file that standard error goes to; the same as output when empty
};

/// How a program ended.
struct ExitStatus {
    int code = -1;  ///< exit code, or -1
    int signal = 0; ///< the signal that ended it, or 0

    bool operator==(const ExitStatus&) const = default;
};

/// A program started by a test. It dies with the test process; the destructor ends it and waits for it.
class ChildProcess {
public:
    [[nodiscard]] static tl::expected<ChildProcess, std::string> start(const Command& command);

    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }

    [[nodiscard]] bool isRunning();

    /// How it ended; none if it is still running after the timeout.
    [[nodiscard]] std::optional<ExitStatus> waitForExit(std::chrono::milliseconds limit);

    /// Sends a signal; nothing happens once it has ended.
    void signal(int number);

    /// SIGTERM, then SIGKILL if it stays; returns how it ended. Does nothing the second time.
    ExitStatus end(std::chrono::milliseconds grace = std::chrono::milliseconds{3000});

private:
    ChildProcess(pid_t pid, int pidFd) : pid_(pid), pidFd_(pidFd) {}

    pid_t pid_ = -1;
    int pidFd_ = -1;
    std::optional<ExitStatus> exit_;
};

/// What a program printed and how it ended.
struct CommandResult {
    ExitStatus exit;
    std::string output;
    std::string errors;
    bool timedOut = false;

    [[nodiscard]] bool succeeded() const { return !timedOut && exit == ExitStatus{0, 0}; }
};

/// Runs a program to its end; kills it on a timeout. The paths in the command are ignored.
[[nodiscard]] CommandResult runToEnd(Command command, std::chrono::milliseconds limit);

} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/calls/KilledProcess.hpp"

#include <csignal>
#include <cstdlib>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::core::testing {
namespace {

constexpr int notTraced = 77;

[[noreturn]] void runTraced(const std::function<std::function<void()>()>& prepare) {
    try {
        const auto steps = prepare();
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(notTraced);
        }
        raise(SIGSTOP);
        steps();
        _exit(0);
    } catch (...) {
        _exit(1);
    }
}

} // namespace

KillResult killAtStop(int stop, const std::function<std::function<void()>()>& prepare) {
    const pid_t child = fork();
    if (child == 0) {
        runTraced(prepare);
    }
    int status = 0;
    waitpid(child, &status, 0);
    for (int count = 0; WIFSTOPPED(status); ++count) {
        // The first one comes out of the stop itself.
        if (count > stop) {
            ::kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return WIFSIGNALED(status) ? KillResult::killed : KillResult::failed;
        }
        if (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
            ::kill(child, SIGKILL);
        }
        waitpid(child, &status, 0);
    }
    if (!WIFEXITED(status)) {
        return KillResult::failed;
    }
    return WEXITSTATUS(status) == 0           ? KillResult::ended
           : WEXITSTATUS(status) == notTraced ? KillResult::notPermitted
                                              : KillResult::failed;
}

} // namespace quillane::core::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/FileDescriptor.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::testing {

/// A program that a test has started, in the test's own environment. It is killed and waited for with the object.
class TestProcess {
public:
    explicit TestProcess(std::vector<std::string> arguments) {
        std::array<int, 2> pipe{};
        if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("pipe2");
        }
        output_ = core::FileDescriptor(pipe[0]);
        const core::FileDescriptor input(pipe[1]);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (auto& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input.get(), STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        const int failed = posix_spawnp(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (failed != 0) {
            throw std::runtime_error("cannot start " + arguments[0]);
        }
    }

    TestProcess(const TestProcess&) = delete;
    TestProcess& operator=(const TestProcess&) = delete;

    ~TestProcess() { end(SIGKILL); }

    [[nodiscard]] pid_t pid() const { return pid_; }

    /// The next line that it prints; this waits for it. Empty when it has ended.
    [[nodiscard]] std::string readLine() {
        std::string line;
        for (char c = 0; read(output_.get(), &c, 1) == 1 && c != '\n';) {
            line += c;
        }
        return line;
    }

    /// How it ended, as waitpid gives it; none while it runs.
    [[nodiscard]] std::optional<int> status() {
        int status = 0;
        if (!status_ && waitpid(pid_, &status, WNOHANG) == pid_) {
            status_ = status;
        }
        return status_;
    }

    void signal(int number) const {
        if (!status_) {
            kill(pid_, number);
        }
    }

    /// Sends the signal and waits for the end.
    void end(int number) {
        int status = 0;
        if (!status_) {
            kill(pid_, number);
            while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
            }
            status_ = status;
        }
    }

private:
    core::FileDescriptor output_;
    pid_t pid_ = 0;
    std::optional<int> status_;
};

} // namespace quillane::testing

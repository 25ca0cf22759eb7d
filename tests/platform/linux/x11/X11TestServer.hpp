// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::testing {

/// Lets the event loop run until the condition holds; false when it does not within the deadline.
inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds deadline = std::chrono::seconds(30)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    QTimer wake;
    wake.start(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs a program to its end and returns its exit status.
inline int run(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const auto& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) {
        return 127;
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

/// A private X server, ended with the object. DISPLAY names it meanwhile.
class X11TestServer {
public:
    X11TestServer() {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) {
            throw std::runtime_error("pipe");
        }
        const auto displayDescriptor = std::to_string(pipe[1]);
        std::vector<std::string> arguments{"Xvfb",      "-displayfd", displayDescriptor, "-screen", "0", "640x480x24",
                                           "-nolisten", "tcp",        "-noreset",        "-audit",  "0"};
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (auto& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", 1 /* O_WRONLY */, 0);
        const int failed = posix_spawnp(&pid_, "Xvfb", &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(pipe[1]);
        std::string number;
        for (char c = 0; failed == 0 && read(pipe[0], &c, 1) == 1 && c != '\n';) {
            number += c;
        }
        close(pipe[0]);
        if (number.empty()) {
            throw std::runtime_error("Xvfb did not start");
        }
        display_ = ":" + number;
        setenv("DISPLAY", display_.c_str(), 1);
    }

    X11TestServer(const X11TestServer&) = delete;
    X11TestServer& operator=(const X11TestServer&) = delete;

    ~X11TestServer() { stop(); }

    void stop() {
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
            pid_ = 0;
        }
    }

    [[nodiscard]] const std::string& display() const { return display_; }

private:
    pid_t pid_ = 0;
    std::string display_;
};

/// A test with an event loop and an X server of its own.
class X11Test : public ::testing::Test {
protected:
    X11Test() : application_(argc_, argv_.data()) {}

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_;

protected:
    X11TestServer server_;
};

} // namespace quillane::testing

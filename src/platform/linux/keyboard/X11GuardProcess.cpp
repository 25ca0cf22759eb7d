// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11GuardProcess.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane {

namespace {

constexpr auto programName = "quillane-keyboard-guard";

/// Where it is installed, or built.
std::string program() {
    const QDir own(QCoreApplication::applicationDirPath());
    for (const auto* folder : {QUILLANE_GUARD_FOLDER, "."}) {
        const QFileInfo file(own.filePath(QString::fromUtf8(folder)) + u'/' + QString::fromUtf8(programName));
        if (file.isExecutable()) {
            return file.canonicalFilePath().toStdString();
        }
    }
    return {};
}

/// The environment with another display, if one is named.
std::vector<std::string> environmentFor(const std::string& display) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (display.empty() || !std::string_view(*variable).starts_with("DISPLAY=")) {
            variables.emplace_back(*variable);
        }
    }
    if (!display.empty()) {
        variables.push_back("DISPLAY=" + display);
    }
    return variables;
}

} // namespace

X11GuardProcess::~X11GuardProcess() {
    forget();
}

void X11GuardProcess::guard(std::uint32_t window) {
    if (window == 0) {
        if (input_) {
            write(0);
        }
    } else if (!input_ || !write(window)) {
        if (start()) {
            write(window);
        }
    }
}

bool X11GuardProcess::write(std::uint32_t window) {
    return ::write(input_.get(), &window, sizeof window) == sizeof window;
}

/// It ends by itself once its input has ended, and waits for nobody.
void X11GuardProcess::forget() {
    input_ = core::FileDescriptor();
    if (pid_ > 0) {
        ::waitpid(pid_, nullptr, WNOHANG);
        pid_ = 0;
    }
}

bool X11GuardProcess::start() {
    forget();
    auto file = program();
    int ends[2];
    if (file.empty() || ::pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    const core::FileDescriptor output(ends[0]);
    input_ = core::FileDescriptor(ends[1]);
    ::fcntl(input_.get(), F_SETFL, O_NONBLOCK);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output.get(), STDIN_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A group of its own: Ctrl-Z in a terminal stops this process and not that one.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    auto variables = environmentFor(display_);
    std::vector<char*> environment;
    environment.reserve(variables.size() + 1);
    for (auto& variable : variables) {
        environment.push_back(variable.data());
    }
    environment.push_back(nullptr);
    char* arguments[] = {file.data(), nullptr};
    const int failure = ::posix_spawn(&pid_, file.c_str(), &actions, &attributes, arguments, environment.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    if (failure != 0) {
        pid_ = 0;
        input_ = core::FileDescriptor();
    }
    return failure == 0;
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/ChildProcess.hpp"

#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::live {
namespace {

std::optional<std::string> findProgram(const std::string& name, const Environment& environment) {
    if (name.find('/') != std::string::npos) {
        return access(name.c_str(), X_OK) == 0 ? std::optional(name) : std::nullopt;
    }
    const auto found = environment.find("PATH");
    std::string_view path = found == environment.end() ? "/usr/bin:/bin" : std::string_view(found->second);
    while (!path.empty()) {
        const auto colon = path.find(':');
        const std::string candidate = std::string(path.substr(0, colon)) + "/" + name;
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        path.remove_prefix(colon == std::string_view::npos ? path.size() : colon + 1);
    }
    return std::nullopt;
}

/// Runs between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(const char* program, char* const* arguments, char* const* environment,
                                const char* folder, const char* output, const char* errors, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(127);
    }
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    signal(SIGINT, SIG_DFL);
    const int input = open("/dev/null", O_RDONLY);
    const int out = open(output, O_WRONLY | O_CREAT | O_APPEND, 0600);
    const int err = open(errors, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (input < 0 || out < 0 || err < 0 || dup2(input, 0) < 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0 ||
        chdir(folder) != 0) {
        _exit(127);
    }
    close_range(3, ~0U, 0);
    execve(program, arguments, environment);
    _exit(127);
}

ExitStatus fromWaitStatus(int status) {
    return WIFSIGNALED(status) ? ExitStatus{-1, WTERMSIG(status)} : ExitStatus{WEXITSTATUS(status), 0};
}

} // namespace

Environment currentEnvironment() {
    Environment result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (const auto equals = text.find('='); equals != std::string_view::npos) {
            result.emplace(text.substr(0, equals), text.substr(equals + 1));
        }
    }
    return result;
}

tl::expected<ChildProcess, std::string> ChildProcess::start(const Command& command) {
    const auto program = findProgram(command.arguments.at(0), command.environment);
    if (!program) {
        return tl::unexpected("no program " + command.arguments[0]);
    }
    std::vector<std::string> storage = command.arguments;
    for (const auto& [name, value] : command.environment) {
        storage.push_back(name);
        storage.back().append("=").append(value);
    }
    std::vector<char*> pointers;
    for (std::size_t i = 0; i < storage.size(); ++i) {
        if (i == command.arguments.size()) {
            pointers.push_back(nullptr);
        }
        pointers.push_back(storage[i].data());
    }
    if (command.environment.empty()) {
        pointers.push_back(nullptr);
    }
    pointers.push_back(nullptr);
    char* const* environment = pointers.data() + command.arguments.size() + 1;

    const std::string output = command.output.empty() ? "/dev/null" : command.output.string();
    const std::string errors = command.errors.empty() ? output : command.errors.string();
    const std::string folder = command.folder.string();
    const pid_t self = getpid();
    const pid_t pid = fork();
    if (pid < 0) {
        return tl::unexpected("fork: " + std::string(std::strerror(errno)));
    }
    if (pid == 0) {
        becomeProgram(program->c_str(), pointers.data(), environment, folder.c_str(), output.c_str(), errors.c_str(),
                      self);
    }
    setpgid(pid, pid);
    const int pidFd = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (pidFd < 0) {
        const std::string reason = std::strerror(errno);
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        return tl::unexpected("pidfd_open: " + reason);
    }
    return ChildProcess(pid, pidFd);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)), pidFd_(std::exchange(other.pidFd_, -1)), exit_(other.exit_) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(pid_, other.pid_);
    std::swap(pidFd_, other.pidFd_);
    std::swap(exit_, other.exit_);
    return *this;
}

ChildProcess::~ChildProcess() {
    end();
    if (pidFd_ >= 0) {
        close(pidFd_);
    }
}

bool ChildProcess::isRunning() {
    return !waitForExit(std::chrono::milliseconds{0});
}

std::optional<ExitStatus> ChildProcess::waitForExit(std::chrono::milliseconds limit) {
    if (exit_ || pid_ < 0) {
        return exit_.value_or(ExitStatus{});
    }
    const auto deadline = std::chrono::steady_clock::now() + limit;
    pollfd ended{.fd = pidFd_, .events = POLLIN, .revents = 0};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        const int count = poll(&ended, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
        if (count == 0) {
            return std::nullopt;
        }
        if (count > 0) {
            break;
        }
        if (errno != EINTR) {
            return std::nullopt;
        }
    }
    int status = 0;
    waitpid(pid_, &status, 0);
    exit_ = fromWaitStatus(status);
    return exit_;
}

void ChildProcess::signal(int number) {
    if (!exit_ && pid_ > 0) {
        kill(pid_, number); // not yet reaped, so the number is still ours
    }
}

ExitStatus ChildProcess::end(std::chrono::milliseconds grace) {
    signal(SIGTERM);
    if (auto exit = waitForExit(grace)) {
        return *exit;
    }
    signal(SIGKILL);
    return waitForExit(std::chrono::milliseconds{10'000}).value_or(ExitStatus{});
}

CommandResult runToEnd(Command command, std::chrono::milliseconds limit) {
    CommandResult result;
    const auto folder = live::TemporaryFolder::create("quillane-command");
    if (!folder) {
        result.errors = folder.error();
        return result;
    }
    command.output = folder->path() / "output";
    command.errors = folder->path() / "errors";
    auto process = ChildProcess::start(command);
    if (!process) {
        result.errors = process.error();
        return result;
    }
    const auto exit = process->waitForExit(limit);
    result.timedOut = !exit;
    result.exit = exit ? *exit : process->end(std::chrono::milliseconds{0});
    result.output = readFile(command.output);
    result.errors = readFile(command.errors);
    return result;
}

} // namespace quillane::live

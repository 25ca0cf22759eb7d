// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quillane {

struct RunningApplication {
    pid_t pid = 0;
    std::optional<std::string> bundleID; ///< on Linux from the window class; none when the window has none
    std::string name;

    bool operator==(const RunningApplication&) const = default;
};

/// The user's session: which applications run, which is in front, and when that changes. Main thread. Reading never
/// blocks.
class Workspace {
public:
    virtual ~Workspace() = default;

    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    /// Calls back once `frontmostApplication` shows who was in front when this was called: where other programs
    /// announce a switch, keys and copies may arrive before it. Calls back at once, inside the call, on a desktop that
    /// knows without asking; never if this object has been destroyed.
    virtual void whenFrontIsKnown(std::function<void()> callback) { callback(); }

    /// Running applications with exactly this bundle identifier, except this process.
    [[nodiscard]] virtual std::vector<RunningApplication> runningApplications(std::string_view bundleID) const = 0;

    /// Whether an application with this process identifier is running.
    [[nodiscard]] virtual bool isRunning(pid_t pid) const = 0;

    /// Asks an application to come to the front, over whatever is there. Does nothing if it is in front. It is there
    /// after the call, and may come late or not at all: macOS 14 and later decide themselves, and follow a program that
    /// yields its own place. False when it could not be asked.
    virtual bool activateApplication(pid_t pid) = 0;

    /// Asks an application to quit, as its own Quit command would. False when it could not be asked.
    virtual bool terminate(pid_t pid) = 0;

    /// True when the session started this process at login, rather than the user.
    [[nodiscard]] virtual bool launchedAtLogin() const = 0;

    /// Another application has come to the front.
    virtual core::Subscription onDidActivateApplication(std::function<void()> callback) = 0;

    /// The machine has woken from sleep.
    virtual core::Subscription onDidWake(std::function<void()> callback) = 0;

    /// The user has opened the program again while it runs, and the desktop has started no second process, as macOS
    /// does. A desktop that starts a second process (see AgentControl) never calls back.
    virtual core::Subscription onDidReopen([[maybe_unused]] std::function<void()> callback) { return {}; }
};

} // namespace quillane

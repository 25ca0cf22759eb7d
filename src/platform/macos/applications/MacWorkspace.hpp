// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.hpp"

#include <memory>

namespace quillane {

/// The session through NSWorkspace and NSRunningApplication (AppKit), which follow it while the main run loop runs.
class MacWorkspace final : public Workspace {
public:
    /// Starts observing the workspace. Construct it before `finishLaunching`: afterwards the event with the reason of
    /// the launch is gone. `atLogin` is the reason that the command line gives.
    explicit MacWorkspace(bool atLogin);
    ~MacWorkspace() override;

    /// NSWorkspace.frontmostApplication.
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;

    /// +[NSRunningApplication runningApplicationsWithBundleIdentifier:].
    [[nodiscard]] std::vector<RunningApplication> runningApplications(std::string_view bundleID) const override;

    /// +[NSRunningApplication runningApplicationWithProcessIdentifier:].
    [[nodiscard]] bool isRunning(pid_t pid) const override;

    /// -[NSRunningApplication terminate].
    bool activateApplication(pid_t pid) override;
    bool terminate(pid_t pid) override;

    /// Whether the application was opened by an 'oapp' event whose property data is 'lgit' (AERegistry.h). Known after
    /// `finishLaunching`.
    [[nodiscard]] bool launchedAtLogin() const override;

    /// NSWorkspaceDidActivateApplicationNotification.
    core::Subscription onDidActivateApplication(std::function<void()> callback) override;

    /// NSWorkspaceDidWakeNotification.
    core::Subscription onDidWake(std::function<void()> callback) override;

    /// The Apple event 'rapp', which this object handles in place of AppKit (NSAppleEventManager).
    core::Subscription onDidReopen(std::function<void()> callback) override;

private:
    struct State;
    class Observers;
    std::shared_ptr<State> state_; // a notification may still be in the main queue when its observer has been removed
    std::unique_ptr<Observers> observers_;
};

} // namespace quillane

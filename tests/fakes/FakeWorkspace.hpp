// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Listeners.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Workspace.hpp"
#include "support/Journal.hpp"

#include <chrono>

namespace quillane::fakes {

/// A session whose applications a test opens, brings to the front and quits. As on every desktop, an application that
/// is asked to come to the front is there a moment after the call.
class FakeWorkspace final : public Workspace {
public:
    explicit FakeWorkspace(MainQueue& queue) : queue_(queue) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;
    void whenFrontIsKnown(std::function<void()> callback) override;
    [[nodiscard]] std::vector<RunningApplication> runningApplications(std::string_view bundleID) const override;
    [[nodiscard]] bool isRunning(pid_t pid) const override;
    bool activateApplication(pid_t pid) override;
    bool terminate(pid_t pid) override;

    [[nodiscard]] bool launchedAtLogin() const override {
        note(journal, "launchedAtLogin");
        return launchedAtLogin_;
    }

    core::Subscription onDidActivateApplication(std::function<void()> callback) override;
    core::Subscription onDidWake(std::function<void()> callback) override;
    core::Subscription onDidReopen(std::function<void()> callback) override;

    /// Opens an application behind the others and returns its new process identifier.
    pid_t open(std::optional<std::string> bundleID, std::string name = {});

    /// Brings an application to the front and gives notice. Throws when it does not run.
    void activate(pid_t pid);

    /// Brings an application to the front, of which this program learns when it asks who is known to be there.
    void activateUnnoticed(pid_t pid) { unnoticed_ = pid; }

    /// The application quits by itself; nothing is in front when it was.
    void quit(pid_t pid);

    /// The application has another name from now on.
    void setBundleID(pid_t pid, std::optional<std::string> bundleID);

    /// The desktop itself comes to the front: there is no application in front.
    void activateNothing();

    void wake() { woke_.notify(); }

    void reopen() { reopened_.notify(); }

    void setLaunchedAtLogin(bool launched) { launchedAtLogin_ = launched; }

    /// What becomes of a request to bring an application to the front.
    enum class Activation {
        granted,
        late,
        refused,
    };

    /// How requests are answered from now on. Since macOS 14 activation is cooperative: one that this program makes
    /// while it is in front itself, and can yield its place, is granted whatever is set here.
    void answerActivation(Activation answer, std::chrono::milliseconds delay = {}) {
        activation_ = answer;
        activationDelay_ = delay;
    }

    /// The identifier of this program, in the eyes of the workspace.
    static constexpr std::string_view ownBundleID = "com.quillane.app";

    /// Makes applications ignore the request to quit.
    void setRefusesTermination(bool refuses) { refusesTermination_ = refuses; }

    Journal* journal = nullptr; ///< none: nothing is recorded

    /// The processes that were successfully asked to quit, in order.
    [[nodiscard]] const std::vector<pid_t>& terminated() const { return terminated_; }

private:
    [[nodiscard]] core::Subscription observed(core::Subscription token, const std::string& name) const;

    std::vector<RunningApplication> running_;
    std::optional<pid_t> front_;
    std::optional<pid_t> unnoticed_; ///< in front since a switch that this program has not learned of
    pid_t nextPid_ = 1001;
    bool launchedAtLogin_ = false;
    bool refusesTermination_ = false;
    MainQueue& queue_;
    Activation activation_ = Activation::granted;
    std::chrono::milliseconds activationDelay_{};
    std::vector<pid_t> terminated_;
    core::Listeners<> activated_;
    core::Listeners<> woke_;
    core::Listeners<> reopened_;
};

} // namespace quillane::fakes

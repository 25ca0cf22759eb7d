// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeWorkspace.hpp"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace quillane::fakes {

std::optional<RunningApplication> FakeWorkspace::frontmostApplication() const {
    note(journal, "frontmostApplication");
    const auto found = front_ ? std::ranges::find(running_, *front_, &RunningApplication::pid) : running_.end();
    return found == running_.end() ? std::nullopt : std::optional(*found);
}

void FakeWorkspace::whenFrontIsKnown(std::function<void()> callback) {
    if (const auto pid = std::exchange(unnoticed_, std::nullopt)) {
        activate(*pid);
    }
    callback();
}

std::vector<RunningApplication> FakeWorkspace::runningApplications(std::string_view bundleID) const {
    note(journal, "runningApplications");
    std::vector<RunningApplication> found;
    std::ranges::copy_if(running_, std::back_inserter(found),
                         [&](const auto& one) { return one.bundleID == bundleID; });
    return found;
}

bool FakeWorkspace::isRunning(pid_t pid) const {
    return std::ranges::find(running_, pid, &RunningApplication::pid) != running_.end();
}

bool FakeWorkspace::activateApplication(pid_t pid) {
    if (!isRunning(pid)) {
        return false;
    }
    const auto front = frontmostApplication();
    const bool yields = front && front->bundleID == ownBundleID;
    const auto answer = yields ? Activation::granted : activation_;
    const auto come = [this, pid] {
        if (isRunning(pid)) {
            activate(pid);
        }
    };
    if (answer == Activation::granted) {
        queue_.post(come);
    } else if (answer == Activation::late) {
        queue_.postAfter(activationDelay_, come);
    }
    return true;
}

bool FakeWorkspace::terminate(pid_t pid) {
    if (refusesTermination_ || !isRunning(pid)) {
        return false;
    }
    note(journal, "terminate");
    terminated_.push_back(pid);
    quit(pid);
    return true;
}

core::Subscription FakeWorkspace::observed(core::Subscription token, const std::string& name) const {
    note(journal, name);
    const auto shared = std::make_shared<core::Subscription>(std::move(token)); // shared: functions are copied
    return core::Subscription([shared, journal = journal, name] {
        note(journal, "end of " + name);
        shared->cancel();
    });
}

core::Subscription FakeWorkspace::onDidActivateApplication(std::function<void()> callback) {
    return observed(activated_.subscribe(std::move(callback)), "onDidActivateApplication");
}

core::Subscription FakeWorkspace::onDidWake(std::function<void()> callback) {
    return observed(woke_.subscribe(std::move(callback)), "onDidWake");
}

core::Subscription FakeWorkspace::onDidReopen(std::function<void()> callback) {
    return reopened_.subscribe(std::move(callback));
}

pid_t FakeWorkspace::open(std::optional<std::string> bundleID, std::string name) {
    const auto pid = nextPid_++;
    running_.push_back({.pid = pid, .bundleID = std::move(bundleID), .name = std::move(name)});
    return pid;
}

void FakeWorkspace::activate(pid_t pid) {
    if (std::ranges::find(running_, pid, &RunningApplication::pid) == running_.end()) {
        throw std::out_of_range("No application runs with this process identifier");
    }
    if (front_ != pid) {
        front_ = pid;
        activated_.notify();
    }
}

void FakeWorkspace::quit(pid_t pid) {
    std::erase_if(running_, [&](const auto& one) { return one.pid == pid; });
    if (front_ == pid) {
        front_.reset();
    }
}

void FakeWorkspace::setBundleID(pid_t pid, std::optional<std::string> bundleID) {
    const auto found = std::ranges::find(running_, pid, &RunningApplication::pid);
    if (found == running_.end()) {
        throw std::out_of_range("No application runs with this process identifier");
    }
    found->bundleID = std::move(bundleID);
}

void FakeWorkspace::activateNothing() {
    front_.reset();
}

} // namespace quillane::fakes

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/DesktopEntryCatalog.hpp"

#include "platform/linux/ApplicationIdentities.hpp"
#include "platform/linux/DesktopEntries.hpp"

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace quillane {

namespace {

bool isSame(const std::string& a, const std::string& b) {
    const auto lowered = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lowered, lowered);
}

} // namespace

DesktopEntryCatalog::DesktopEntryCatalog(MainQueue& mainQueue, Running running)
    : mainQueue_(mainQueue), running_(std::move(running)) {}

void DesktopEntryCatalog::read(Handler handler) {
    waiting_.push_back(std::move(handler));
    if (waiting_.size() > 1) {
        return; // the thread that looks answers all
    }
    reader_ = std::jthread([this, alive = std::weak_ptr<void>(alive_)](const std::stop_token& stop) {
        auto installed = installedApplications(applicationFolders(), stop);
        mainQueue_.post([this, alive, installed = std::move(installed)] {
            if (!alive.expired()) {
                finish(installed);
            }
        });
    });
}

void DesktopEntryCatalog::finish(const std::vector<KnownApplication>& installed) {
    auto applications = installed;
    for (const auto& running : running_()) {
        if (running.pid == getpid() || !running.bundleID) {
            continue;
        }
        const auto known = std::ranges::find_if(
            applications, [&](const KnownApplication& one) { return isSame(one.bundleID, *running.bundleID); });
        if (known == applications.end()) {
            applications.push_back({.bundleID = *running.bundleID, .name = running.name, .running = true});
        } else {
            known->bundleID = *running.bundleID; // as the window spells it
            known->running = true;
        }
    }
    std::erase_if(applications, [](const KnownApplication& one) {
        return one.bundleID == bundleIdentifierOfWindowClass("quillane");
    });
    for (const auto& handler : std::exchange(waiting_, {})) {
        handler(applications);
    }
}

} // namespace quillane

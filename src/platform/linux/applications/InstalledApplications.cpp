// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/InstalledApplications.hpp"

#include <utility>

namespace quillane {

namespace {

constexpr std::size_t maximumClasses = 256; // maximum number of classes remembered as unknown

} // namespace

InstalledApplications::InstalledApplications(MainQueue& mainQueue) : mainQueue_(mainQueue) {
    start();
}

void InstalledApplications::read(std::function<void()> done) {
    waiting_.push_back(std::move(done));
    if (!isReading_) {
        start();
    }
}

void InstalledApplications::whenRead(std::function<void()> done) {
    if (isReading_) {
        waiting_.push_back(std::move(done));
    } else {
        done();
    }
}

void InstalledApplications::lookFor(const std::string& windowClass) {
    if (lookedFor_.size() >= maximumClasses) {
        lookedFor_.clear();
    }
    if (lookedFor_.insert(windowClass).second && !isReading_) {
        start();
    }
}

void InstalledApplications::start() {
    isReading_ = true;
    reader_ = std::jthread([this, alive = lifetime_.watch()](const std::stop_token& stop) {
        ApplicationIndex index(desktopEntries(applicationFolders(), stop));
        mainQueue_.post([this, alive, index = std::move(index)]() mutable {
            if (alive) {
                finish(std::move(index));
            }
        });
    });
}

void InstalledApplications::finish(ApplicationIndex index) {
    isReading_ = false;
    index_ = std::move(index);
    changes_.notify();
    for (const auto& done : std::exchange(waiting_, {})) {
        if (done) {
            done();
        }
    }
}

} // namespace quillane

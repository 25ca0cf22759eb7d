// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Listeners.hpp"
#include "platform/MainQueue.hpp"
#include "platform/linux/applications/ApplicationIndex.hpp"

#include <functional>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace quillane {

/// The index of the installed applications, read on a thread of its own: once at the start, and on request. Main
/// thread. The main queue must outlive it.
class InstalledApplications {
public:
    explicit InstalledApplications(MainQueue& mainQueue);

    /// Empty until the entries have been read.
    [[nodiscard]] const ApplicationIndex& index() const { return index_; }

    /// Reads the entries again and then calls `done`, never inside the call, unless this object has been destroyed.
    void read(std::function<void()> done = {});

    /// Calls `done` once no reading is in progress: at once, or when the one in progress has finished. Not called if
    /// this object has been destroyed.
    void whenRead(std::function<void()> done);

    /// Reads the entries again if this window may belong to an application that has been installed since. Each class is
    /// looked up once.
    void lookFor(const std::string& windowClass);

    /// The index has been read.
    core::Subscription onChanged(std::function<void()> callback) { return changes_.subscribe(std::move(callback)); }

private:
    void start();
    void finish(ApplicationIndex index);

    MainQueue& mainQueue_;
    ApplicationIndex index_;
    bool isReading_ = false;
    std::vector<std::function<void()>> waiting_; ///< for the entries that are being read
    std::set<std::string, std::less<>> lookedFor_;
    core::Listeners<> changes_;
    core::Lifetime lifetime_;
    std::jthread reader_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Listeners.hpp"
#include "platform/MainQueue.hpp"
#include "platform/linux/applications/ApplicationIndex.hpp"

#include <functional>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace quillane {

/// The index of the applications that are installed, read on a thread of its own: once from the start on, and whenever
/// somebody asks. Main thread. The main queue must outlive it.
class InstalledApplications {
public:
    explicit InstalledApplications(MainQueue& mainQueue);

    /// Empty until the entries have been read.
    [[nodiscard]] const ApplicationIndex& index() const { return index_; }

    /// Reads the entries anew and then calls `done`, never inside the call, unless this object has gone by then.
    void read(std::function<void()> done = {});

    /// Reads the entries anew when this window may belong to an application that has been installed since. Each class
    /// is looked for once.
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
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with an answer that is on its way
    std::jthread reader_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Workspace.hpp"

#include <memory>
#include <thread>

namespace quillane {

/// The applications that have an entry (see DesktopEntries) or a window.
class DesktopEntryCatalog final : public ApplicationCatalog {
public:
    using Running = std::function<std::vector<RunningApplication>()>;

    /// `running` tells who has windows; it is asked on the main thread.
    DesktopEntryCatalog(MainQueue& mainQueue, Running running);

    void read(Handler handler) override;

private:
    void finish(const std::vector<KnownApplication>& installed);

    MainQueue& mainQueue_;
    Running running_;
    std::vector<Handler> waiting_;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with an answer that is on its way
    std::jthread reader_;                                   ///< runs while anybody waits
};

} // namespace quillane

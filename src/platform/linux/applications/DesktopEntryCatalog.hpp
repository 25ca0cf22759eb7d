// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/ApplicationCatalog.hpp"
#include "platform/Workspace.hpp"
#include "platform/linux/applications/InstalledApplications.hpp"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillane {

/// The applications that have an entry (see ApplicationIndex) or a window.
class DesktopEntryCatalog final : public ApplicationCatalog {
public:
    using Running = std::function<std::vector<RunningApplication>()>;

    /// `running` returns the applications that have windows; it is called on the main thread.
    DesktopEntryCatalog(std::shared_ptr<InstalledApplications> installed, Running running)
        : installed_(std::move(installed)), running_(std::move(running)) {}

    void read(Handler handler) override;

private:
    [[nodiscard]] std::vector<KnownApplication> applications() const;

    std::shared_ptr<InstalledApplications> installed_; // shared with the workspace
    Running running_;
    core::Lifetime lifetime_;
};

} // namespace quillane

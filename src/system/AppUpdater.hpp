// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Listeners.hpp"
#include "platform/UpdaterService.hpp"
#include "platform/WindowTraits.hpp"

#include <functional>
#include <optional>
#include <string>

namespace quillane {

/// Updates as the user sees them. Where a package manager updates the program there is no service, and in a build
/// without an update key the service is idle: then nothing can be switched. Main thread.
class AppUpdater {
public:
    /// An empty version is shown as a dash.
    AppUpdater(UpdaterService* service, WindowTraits& windowTraits, std::string version);

    /// Call once, when the program has finished launching. Nothing is checked before.
    void start();

    enum class Means {
        packageManager, ///< updates the program together with the other software
        none,           ///< a build without the key that updates are verified with
        itself,
    };

    [[nodiscard]] Means means() const;

    [[nodiscard]] bool updatesItself() const { return means() == Means::itself; }

    [[nodiscard]] bool canCheck() const { return updatesItself() && service_->canCheck(); }

    [[nodiscard]] std::optional<core::Date> lastCheck() const;

    [[nodiscard]] bool checksAutomatically() const { return updatesItself() && service_->checksAutomatically(); }

    void setChecksAutomatically(bool automatically);

    /// Looks for a new version, if possible, with the program in front.
    void checkNow();

    [[nodiscard]] const std::string& version() const { return version_; }

    [[nodiscard]] core::Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

private:
    UpdaterService* service_; ///< may be absent
    WindowTraits& windowTraits_;
    std::string version_;
    bool started_ = false;
    core::Listeners<> changed_;
    core::Subscription serviceChanges_;
};

} // namespace quillane

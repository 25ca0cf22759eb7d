// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Date.hpp"
#include "core/support/Subscription.hpp"

#include <functional>
#include <optional>

namespace quillane {

/// What installs new versions of this program by itself. Main thread. Shows its own windows and keeps its own settings.
class UpdaterService {
public:
    virtual ~UpdaterService() = default;

    /// Whether this build carries the key that updates are verified with. Without one nothing is ever started or
    /// checked.
    [[nodiscard]] virtual bool hasKey() const = 0;

    /// Starts checking in the background if that is switched on. Called at most once, after the program has started.
    virtual void start() = 0;

    /// False while a check or an update is in progress.
    [[nodiscard]] virtual bool canCheck() const = 0;

    [[nodiscard]] virtual std::optional<core::Date> lastCheck() const = 0;

    [[nodiscard]] virtual bool checksAutomatically() const = 0;
    virtual void setChecksAutomatically(bool automatically) = 0;

    /// Looks for a new version and shows the user the result.
    virtual void checkForUpdates() = 0;

    /// One of the three answers above has changed.
    virtual core::Subscription onChanged(std::function<void()> callback) = 0;
};

} // namespace quillane

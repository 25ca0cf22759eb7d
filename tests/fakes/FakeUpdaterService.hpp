// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Listeners.hpp"
#include "platform/UpdaterService.hpp"
#include "support/Journal.hpp"

namespace quillane::fakes {

/// An updater that keeps its own settings and finds nothing.
class FakeUpdaterService final : public UpdaterService {
public:
    [[nodiscard]] bool hasKey() const override { return key; }

    void start() override {
        note(journal, "start the updater");
        ++starts;
    }

    [[nodiscard]] bool canCheck() const override { return !checking; }

    [[nodiscard]] std::optional<core::Date> lastCheck() const override { return checked; }

    [[nodiscard]] bool checksAutomatically() const override { return automatic; }

    void setChecksAutomatically(bool automatically) override {
        automatic = automatically;
        changed.notify();
    }

    void checkForUpdates() override {
        ++checks;
        checking = true;
        changed.notify();
    }

    core::Subscription onChanged(std::function<void()> callback) override {
        return changed.subscribe(std::move(callback));
    }

    /// The running check has ended.
    void finish(core::Date now) {
        checking = false;
        checked = now;
        changed.notify();
    }

    Journal* journal = nullptr; ///< none: nothing is recorded
    bool key = true;
    int starts = 0;
    int checks = 0;
    bool checking = false;
    bool automatic = true;
    std::optional<core::Date> checked;
    core::Listeners<> changed;
};

} // namespace quillane::fakes

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/InstallationPreferences.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/support/Listeners.hpp"

#include <functional>

namespace quillane::core {

/// Loads, saves and announces the installation record. There is one, made by the composition root. Main thread.
class AppPreferences {
public:
    /// Reads the stored record; one that is missing or damaged is replaced by a fresh one. Saves it either way.
    explicit AppPreferences(UserDefaults& defaults);

    [[nodiscard]] const InstallationPreferences& state() const { return state_; }

    /// Sets the interface language by the user's choice, saves it, and notifies the listeners.
    void choose(AppLanguage language);

    [[nodiscard]] Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

private:
    void save();
    void configureBundleLanguage();

    UserDefaults& defaults_;
    InstallationPreferences state_;
    Listeners<> changed_;
};

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/support/Listeners.hpp"
#include "platform/LoginItemService.hpp"

#include <functional>
#include <optional>

namespace quillane {

/// Starting at login as the user sees it. The system owns the state; this mirrors it. Main thread.
class LoginItemController {
public:
    /// `installed` says whether this copy may be started at login.
    LoginItemController(LoginItemService& service, bool installed, core::Desktop desktop = {});

    /// Reads the status again; notifies listeners only of changes.
    void refresh();

    /// Adds the program to the login items or removes it. Opens the system's settings instead while an approval is
    /// missing. Does nothing for a copy that is not installed, or during another change.
    void setEnabled(bool enabled);

    void openSettings() { service_.openSettings(); }

    [[nodiscard]] bool hasSettings() const { return service_.hasSettings(); }

    [[nodiscard]] LoginItemStatus status() const { return status_; }

    [[nodiscard]] core::LocalizedText statusText() const;

    [[nodiscard]] bool isOn() const { return status_ == LoginItemStatus::enabled; }

    [[nodiscard]] bool isInstalled() const { return installed_; }

    [[nodiscard]] bool isChanging() const { return changing_; }

    /// Why the last change failed.
    [[nodiscard]] const std::optional<core::LocalizedText>& errorMessage() const { return errorMessage_; }

    [[nodiscard]] core::Subscription onChanged(std::function<void()> callback) {
        return changed_.subscribe(std::move(callback));
    }

private:
    void change(bool enabled);

    LoginItemService& service_;
    bool installed_;
    core::Desktop desktop_; ///< the desktop that texts name
    LoginItemStatus status_;
    bool changing_ = false;
    std::optional<core::LocalizedText> errorMessage_;
    core::Listeners<> changed_;
};

} // namespace quillane

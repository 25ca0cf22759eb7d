// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "system/LoginItemController.hpp"

#include "core/localization/Texts.hpp"

#include <utility>

namespace quillane {

namespace texts = core::texts;

LoginItemController::LoginItemController(LoginItemService& service, bool installed, core::Desktop desktop)
    : service_(service), installed_(installed), desktop_(desktop), status_(service.status()) {}

void LoginItemController::refresh() {
    const auto status = service_.status();
    if (std::exchange(status_, status) != status) {
        changed_.notify();
    }
}

void LoginItemController::setEnabled(bool enabled) {
    if (changing_ || !installed_) {
        return;
    }
    refresh();
    errorMessage_.reset();
    if (enabled && status_ == LoginItemStatus::requiresApproval) {
        service_.openSettings(); // registering again would not help
    } else if (enabled != isOn()) {
        change(enabled);
    }
    changed_.notify();
}

void LoginItemController::change(bool enabled) {
    changing_ = true; // not announced: a control that is disabled for a moment would lose the focus
    const bool done = enabled ? service_.enable() : service_.disable();
    if (!done) {
        refresh();
        if (status_ != LoginItemStatus::requiresApproval) {
            errorMessage_ = texts::couldNotChangeLoginItem.on(desktop_);
        }
    }
    changing_ = false;
    refresh();
}

core::LocalizedText LoginItemController::statusText() const {
    switch (status_) {
    case LoginItemStatus::notRegistered:
        return texts::loginItemOff;
    case LoginItemStatus::enabled:
        return texts::loginItemOn;
    case LoginItemStatus::requiresApproval:
        return texts::loginItemRequiresApproval;
    case LoginItemStatus::notFound:
        return texts::loginItemNotSetUp;
    case LoginItemStatus::unknown:
        break;
    }
    return texts::loginItemUnreadable.on(desktop_);
}

} // namespace quillane

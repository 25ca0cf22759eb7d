// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "system/AppUpdater.hpp"

#include <utility>

namespace quillane {

AppUpdater::AppUpdater(UpdaterService* service, WindowTraits& windowTraits, std::string version)
    : service_(service), windowTraits_(windowTraits), version_(version.empty() ? "–" : std::move(version)) {
    if (service_ != nullptr) {
        serviceChanges_ = service_->onChanged([this] { changed_.notify(); });
    }
}

void AppUpdater::start() {
    if (service_ != nullptr && !std::exchange(started_, true)) {
        service_->start();
    }
}

std::optional<core::Date> AppUpdater::lastCheck() const {
    return service_ != nullptr ? service_->lastCheck() : std::nullopt;
}

void AppUpdater::setChecksAutomatically(bool automatically) {
    if (service_ != nullptr) {
        service_->setChecksAutomatically(automatically);
    }
}

void AppUpdater::checkNow() {
    if (canCheck()) {
        windowTraits_.activateApplication();
        service_->checkForUpdates();
    }
}

} // namespace quillane

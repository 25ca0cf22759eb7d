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

AppUpdater::Means AppUpdater::means() const {
    if (service_ == nullptr) {
        return Means::packageManager;
    }
    return service_->hasKey() ? Means::itself : Means::none;
}

void AppUpdater::start() {
    if (updatesItself() && !std::exchange(started_, true)) {
        service_->start();
    }
}

std::optional<core::Date> AppUpdater::lastCheck() const {
    return updatesItself() ? service_->lastCheck() : std::nullopt;
}

void AppUpdater::setChecksAutomatically(bool automatically) {
    if (updatesItself()) {
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

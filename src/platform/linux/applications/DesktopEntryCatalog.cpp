// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/DesktopEntryCatalog.hpp"

#include <algorithm>

#include <unistd.h>

namespace quillane {

void DesktopEntryCatalog::read(Handler handler) {
    installed_->read([this, alive = lifetime_.watch(), handler = std::move(handler)] {
        if (alive) {
            handler(applications());
        }
    });
}

std::vector<KnownApplication> DesktopEntryCatalog::applications() const {
    const auto& index = installed_->index();
    auto applications = index.applications();
    for (const auto& running : running_()) {
        if (running.pid == getpid() || !running.bundleID) {
            continue;
        }
        const auto known = std::ranges::find(applications, *running.bundleID, &KnownApplication::bundleID);
        if (known == applications.end()) {
            applications.push_back({.bundleID = *running.bundleID, .name = running.name, .running = true});
        } else {
            known->running = true;
        }
    }
    std::erase_if(applications,
                  [&](const KnownApplication& one) { return one.bundleID == index.identifierOf("quillane"); });
    return applications;
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/dbus/SessionBus.hpp"

namespace quillane {

namespace {

constexpr std::chrono::seconds betweenTries{1};

} // namespace

SessionBus::SessionBus()
    : connection_(BusConnection::open(sessionBusAddress())), lastTry_(BusConnection::Clock::now()) {}

BusConnection* SessionBus::connection() {
    if (connection_ && !connection_->isLost()) {
        return connection_.get();
    }
    const auto now = BusConnection::Clock::now();
    if (now - lastTry_ < betweenTries) {
        return nullptr;
    }
    lastTry_ = now;
    connection_ = BusConnection::open(sessionBusAddress());
    if (connection_) {
        openings_.notify(*connection_);
    }
    return connection_.get();
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/dbus/BusConnection.hpp"

#include <memory>

namespace quillane {

/// The user's session bus, shared by everything that speaks to it. Main thread only.
///
/// Without a bus, or after losing it, a use tries to connect again, at most once a second; nothing wakes up for that.
class SessionBus {
public:
    SessionBus();

    /// The connection, or nullptr while there is none. May open one.
    [[nodiscard]] BusConnection* connection();

    /// A connection has been opened in place of one that was lost or never existed: subscriptions and matches must be
    /// made on it. Called from `connection`, before it returns.
    core::Subscription onOpened(std::function<void(BusConnection&)> handler) {
        return openings_.subscribe(std::move(handler));
    }

private:
    std::unique_ptr<BusConnection> connection_;
    BusConnection::Clock::time_point lastTry_;
    core::Listeners<BusConnection&> openings_;
};

} // namespace quillane

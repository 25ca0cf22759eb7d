// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/dbus/BusConnection.hpp"

#include <memory>
#include <string>

namespace quillane {

class SessionBus;

/// The separate bus on which applications offer their accessibility trees (AT-SPI 2). Its address comes from the
/// session's org.a11y.Bus, and it may end, or another may take its place, at any time. Main thread only; nothing waits.
class AccessibilityBus {
public:
    explicit AccessibilityBus(SessionBus& session);

    /// The connection, or nullptr while there is none. A call then looks for the bus again, at most once a second.
    [[nodiscard]] BusConnection* connection();

    /// A connection has been opened.
    core::Subscription onOpened(std::function<void(BusConnection&)> handler) {
        return openings_.subscribe(std::move(handler));
    }

    /// The connection has been lost.
    core::Subscription onLost(std::function<void()> handler) { return losses_.subscribe(std::move(handler)); }

private:
    void watch(BusConnection& session);
    void find(BusConnection& session);
    void open(const std::string& address);

    SessionBus& session_;
    std::unique_ptr<BusConnection> connection_;
    std::string address_; ///< of the connection; it is another one for each bus
    bool finding_ = false;
    BusConnection::Clock::time_point lastTry_;
    core::Listeners<BusConnection&> openings_;
    core::Listeners<> losses_;
    core::Lifetime lifetime_;
    core::Subscription reopenings_;
    core::Subscription signals_;
    core::Subscription loss_;
};

} // namespace quillane

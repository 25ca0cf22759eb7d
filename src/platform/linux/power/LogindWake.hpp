// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/dbus/BusConnection.hpp"

#include <memory>

namespace quillane {

/// Announces that the machine has woken from sleep, from the login manager's signal on the system bus
/// (`PrepareForSleep` of org.freedesktop.login1.Manager). Silent without a system bus. Main thread only; nothing waits.
class LogindWake {
public:
    LogindWake();

    core::Subscription onDidWake(std::function<void()> callback) { return woke_.subscribe(std::move(callback)); }

private:
    core::Listeners<> woke_;
    std::unique_ptr<BusConnection> bus_;
    core::Subscription signals_;
};

} // namespace quillane

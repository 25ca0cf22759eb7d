// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/dbus/BusConnection.hpp"

#include <chrono>
#include <functional>

namespace quillane {

/// Calls a method and waits for its reply, at most for the time given; nothing else of the program runs meanwhile. None
/// on an error, without a bus and when the time is over. A service that is not running is not started for it.
///
/// A reply that comes too late is given to `late`, so that what it hands out can be given back.
[[nodiscard]] BusMessage askBus(BusConnection* bus, BusMessage question, std::chrono::milliseconds patience,
                                std::function<void(DBusMessage&)> late = {});

} // namespace quillane

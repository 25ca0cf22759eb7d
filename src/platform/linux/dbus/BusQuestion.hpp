// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/dbus/BusConnection.hpp"

#include <chrono>
#include <functional>

namespace quillane {

/// Calls a method and waits for its reply, up to the given time; nothing else in the program runs meanwhile. None on an
/// error, without a bus and when the time is over. Does not start a service that is not running.
///
/// A late reply is passed to `late`, so that what it hands out can be released.
[[nodiscard]] BusMessage askBus(BusConnection* bus, BusMessage question, std::chrono::milliseconds timeout,
                                std::function<void(DBusMessage&)> late = {});

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/power/LogindWake.hpp"

namespace quillane {

namespace {

constexpr auto manager = "org.freedesktop.login1.Manager";
constexpr auto prepareForSleep = "PrepareForSleep";

} // namespace

LogindWake::LogindWake() : bus_(BusConnection::open(systemBusAddress())) {
    if (!bus_) {
        return;
    }
    signals_ = bus_->onSignal([this](DBusMessage& signal) {
        if (dbus_message_is_signal(&signal, manager, prepareForSleep) == 0) {
            return;
        }
        const auto goesToSleep = BusReader(signal).flag();
        if (goesToSleep == false) {
            woke_.notify();
        }
    });
    bus_->addMatch("type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',interface='" +
                   std::string(manager) + "',member='" + prepareForSleep + "'");
}

} // namespace quillane

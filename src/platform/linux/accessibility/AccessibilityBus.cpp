// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AccessibilityBus.hpp"

#include "platform/linux/dbus/SessionBus.hpp"

namespace quillane {

namespace {

constexpr auto launcher = "org.a11y.Bus";
constexpr std::chrono::seconds betweenTries{1};

} // namespace

AccessibilityBus::AccessibilityBus(SessionBus& session) : session_(session) {
    reopenings_ = session.onOpened([this](BusConnection& opened) { watch(opened); });
    if (auto* connection = session.connection()) {
        watch(*connection);
    }
}

BusConnection* AccessibilityBus::connection() {
    if (connection_ && !connection_->isLost()) {
        return connection_.get();
    }
    auto* session = session_.connection();
    if (session != nullptr && !finding_ && BusConnection::Clock::now() - lastTry_ >= betweenTries) {
        find(*session);
    }
    return nullptr;
}

void AccessibilityBus::watch(BusConnection& session) {
    signals_ = session.onSignal([this, &session](DBusMessage& signal) {
        if (dbus_message_is_signal(&signal, DBUS_INTERFACE_DBUS, "NameOwnerChanged") == 0) {
            return;
        }
        BusReader reader(signal);
        const auto name = reader.text();
        reader.skip();
        const auto owner = reader.text();
        if (name == launcher && owner && !owner->empty()) {
            find(session);
        }
    });
    session.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                     "member='NameOwnerChanged',arg0='" +
                     std::string(launcher) + "'");
    find(session);
}

void AccessibilityBus::find(BusConnection& session) {
    finding_ = true;
    lastTry_ = BusConnection::Clock::now();
    auto question = methodCall(launcher, "/org/a11y/bus", launcher, "GetAddress");
    dbus_message_set_auto_start(question.get(), 0); // does not turn accessibility on in a session without it
    session.call(std::move(question), lifetime_, [this](DBusMessage* reply) {
        finding_ = false;
        const auto address = reply != nullptr ? BusReader(*reply).text() : std::nullopt;
        const bool isConnected = connection_ && !connection_->isLost();
        if (address && !(isConnected && address_ == *address)) {
            open(std::string(*address));
        }
    });
}

/// A bus that its launcher has left behind may live on, but applications come to the one of the next launcher.
void AccessibilityBus::open(const std::string& address) {
    if (connection_ && !connection_->isLost()) {
        losses_.notify();
    }
    loss_ = {};
    address_ = address;
    connection_ = BusConnection::open(address);
    if (connection_) {
        loss_ = connection_->onLost([this] { losses_.notify(); });
        openings_.notify(*connection_);
    }
}

} // namespace quillane

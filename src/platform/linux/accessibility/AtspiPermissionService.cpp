// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiPermissionService.hpp"

#include "platform/common/qt/QtLauncher.hpp"
#include "platform/linux/dbus/SessionBus.hpp"
#include "platform/linux/system/AccessibilityPanel.hpp"

namespace quillane {

namespace {

constexpr auto launcher = "org.a11y.Bus";
constexpr auto launcherPath = "/org/a11y/bus";
constexpr auto statusInterface = "org.a11y.Status";
constexpr auto isEnabled = "IsEnabled";
constexpr std::chrono::seconds firstAnswer{1}; // without a launcher the bus answers at once

/// The value of `IsEnabled` in a signal of changed properties, which may leave it out.
struct Change {
    bool concerns = false;
    std::optional<bool> value;
};

Change changeOf(DBusMessage& signal) {
    BusReader reader(signal);
    if (reader.text() != statusInterface) {
        return {};
    }
    if (auto changed = reader.container()) {
        while (auto entry = changed->container()) {
            if (entry->text() == isEnabled) {
                auto value = entry->container();
                return {true, value ? value->flag() : std::nullopt};
            }
        }
    }
    if (auto invalidated = reader.container()) {
        while (const auto name = invalidated->text()) {
            if (name == isEnabled) {
                return {true, std::nullopt};
            }
        }
    }
    return {};
}

} // namespace

AtspiPermissionService::AtspiPermissionService(SessionBus& session) : session_(session) {
    reopenings_ = session.onOpened([this](BusConnection& opened) { watch(opened); });
    if (auto* connection = session.connection()) {
        watch(*connection);
    }
}

bool AtspiPermissionService::isGranted(core::MacPermission permission) const {
    if (permission == core::MacPermission::inputMonitoring) {
        return true;
    }
    auto* session = session_.connection(); // read again when the bus is back
    if (session == nullptr) {
        return false;
    }
    if (!answered_) {
        session->wait([this] { return answered_; }, BusConnection::Clock::now() + firstAnswer);
        answered_ = true;
    }
    return enabled_;
}

void AtspiPermissionService::request(core::MacPermission permission) {
    auto* session = session_.connection();
    if (permission != core::MacPermission::accessibility || session == nullptr) {
        return;
    }
    auto change = methodCall(launcher, launcherPath, DBUS_INTERFACE_PROPERTIES, "Set");
    appendText(*change, statusInterface);
    appendText(*change, isEnabled);
    appendVariant(*change, true);
    session->call(std::move(change), lifetime_, [this](DBusMessage*) {
        if (auto* connection = session_.connection()) {
            read(*connection);
        }
    });
}

bool AtspiPermissionService::hasSettings(core::MacPermission permission) const {
    return permission == core::MacPermission::accessibility && isInstalled(accessibilityPanel(currentDesktop()));
}

bool AtspiPermissionService::openSettings(core::MacPermission permission) {
    // Looked up first: starting a program does not report a missing one.
    return hasSettings(permission) && QtLauncher().launch(*accessibilityPanel(currentDesktop()));
}

void AtspiPermissionService::watch(BusConnection& session) {
    signals_ = session.onSignal([this, &session](DBusMessage& signal) {
        if (dbus_message_is_signal(&signal, DBUS_INTERFACE_PROPERTIES, "PropertiesChanged") != 0 &&
            dbus_message_has_path(&signal, launcherPath) != 0) {
            const auto change = changeOf(signal);
            if (change.value) {
                enabled_ = *change.value;
            } else if (change.concerns) {
                read(session);
            }
        } else if (dbus_message_is_signal(&signal, DBUS_INTERFACE_DBUS, "NameOwnerChanged") != 0 &&
                   BusReader(signal).text() == launcher) {
            read(session);
        }
    });
    loss_ = session.onLost([this] { enabled_ = false; });
    session.addMatch("type='signal',sender='" + std::string(launcher) + "',path='" + launcherPath + "',interface='" +
                     DBUS_INTERFACE_PROPERTIES + "',member='PropertiesChanged',arg0='" + statusInterface + "'");
    session.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                     "member='NameOwnerChanged',arg0='" +
                     std::string(launcher) + "'");
    read(session);
}

void AtspiPermissionService::read(BusConnection& session) {
    auto question = propertyRead(launcher, launcherPath, statusInterface, isEnabled);
    dbus_message_set_auto_start(question.get(), 0); // a query must not switch it on
    const auto take = [this](DBusMessage* reply) {
        auto value = reply != nullptr ? BusReader(*reply).container() : std::nullopt;
        enabled_ = value && value->flag() == true;
        answered_ = true;
    };
    session.call(std::move(question), lifetime_, take, BusConnection::Delivery::alsoInWait);
}

} // namespace quillane

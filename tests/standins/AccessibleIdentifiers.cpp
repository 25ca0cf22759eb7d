// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "AccessibleIdentifiers.hpp"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace {

constexpr auto connectionName = "a11y"; // of Qt's own connection
constexpr auto tree = "/org/a11y/atspi/accessible";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto properties = "org.freedesktop.DBus.Properties";

} // namespace

bool AccessibleIdentifiers::install() {
    QDBusConnection connection(connectionName);
    auto* registered = connection.isConnected() ? connection.objectRegisteredAt(tree) : nullptr;
    if (registered == nullptr) {
        return false;
    }
    qt_ = static_cast<QDBusVirtualObject*>(registered);
    connection.unregisterObject(tree, QDBusConnection::UnregisterTree);
    return connection.registerVirtualObject(tree, this, QDBusConnection::SubPath);
}

QString AccessibleIdentifiers::introspect(const QString& path) const {
    return qt_->introspect(path);
}

bool AccessibleIdentifiers::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const bool asks = message.interface() == properties && message.member() == "Get" &&
                      message.arguments() == QVariantList{accessible, "AccessibleId"};
    const auto id = message.path().section('/', -1).toUInt();
    auto* interface = asks ? QAccessible::accessibleInterface(id) : nullptr;
    if (interface == nullptr) {
        return qt_->handleMessage(message, connection);
    }
    const auto name = interface->object() != nullptr ? interface->object()->objectName() : QString();
    return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(name))));
}

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "WrongAnswers.hpp"

#include "AccessibleField.hpp"

#include <QAccessible>
#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace {

/// An object of an application, as assistive technologies name it.
struct Reference {
    QString application;
    QDBusObjectPath path;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Reference& reference) {
    argument.beginStructure();
    argument << reference.application << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference) {
    argument.beginStructure();
    argument >> reference.application >> reference.path;
    argument.endStructure();
    return argument;
}

constexpr uint shownAndEnabled = 1U << 8 | 1U << 24 | 1U << 25 | 1U << 30; // AtspiStateType

} // namespace

Q_DECLARE_METATYPE(Reference)

WrongAnswers::WrongAnswers(QString about) : about_(std::move(about)) {
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
}

bool WrongAnswers::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto wrong = wrongAnswer(message, connection);
    if (!wrong.isValid()) {
        return AccessibleIdentifiers::handleMessage(message, connection);
    }
    return connection.send(wrong.userType() == QMetaType::QVariantList ? message.createReply(wrong.toList())
                                                                       : message.createReply(wrong));
}

QVariant WrongAnswers::wrongAnswer(const QDBusMessage& message, const QDBusConnection& connection) const {
    auto* interface = QAccessible::accessibleInterface(message.path().section('/', -1).toUInt());
    auto* object = interface != nullptr ? interface->object() : nullptr;
    const bool isField = dynamic_cast<Field*>(object) != nullptr;
    const bool isItem = interface != nullptr && interface->role() == QAccessible::MenuItem;
    const auto member = message.member();
    const bool asksForCursor = member == "Get" && message.arguments().value(1) == "CaretOffset";
    const bool asksForSelection = member == "GetNSelections" || member == "GetSelection";
    if (about_ == "field" && isField && (member == "GetRole" || member == "GetState" || member == "GetInterfaces")) {
        return "text";
    }
    if (about_ == "cursor" && isField && asksForCursor) {
        return QVariant::fromValue(QDBusVariant("text"));
    }
    if (about_ == "cursor" && isField && asksForSelection) {
        return "text";
    }
    if (about_ == "ranges" && isField && asksForCursor) {
        return QVariant::fromValue(QDBusVariant(std::numeric_limits<int>::max()));
    }
    if (about_ == "ranges" && isField && asksForSelection) {
        return member == "GetNSelections" ? QVariant(7)
                                          : QVariantList{std::numeric_limits<int>::min(), // to more than there is
                                                         std::numeric_limits<int>::max()};
    }
    if (about_ == "focus" && (isField || isItem) && member == "GetState" &&
        QApplication::activePopupWidget() != nullptr) {
        return QVariant::fromValue(QList<uint>{shownAndEnabled, 0});
    }
    if (about_ == "items" && dynamic_cast<QMenu*>(object) != nullptr && member == "GetChildren") {
        const Reference itself{connection.baseService(), QDBusObjectPath(message.path())};
        return QVariant::fromValue(QList<Reference>(50, itself));
    }
    if (about_ == "titles" && isItem && member == "Get" && message.arguments().value(1) == "Name") {
        return QVariant::fromValue(QDBusVariant(""));
    }
    return {};
}

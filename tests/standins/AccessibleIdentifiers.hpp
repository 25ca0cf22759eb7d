// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusVirtualObject>

/// Tells assistive technologies an identifier of each object: its object name. Qt has done so since 6.5 only, and with
/// the names of everything above it. All other questions go on to Qt.
class AccessibleIdentifiers : public QDBusVirtualObject {
public:
    /// Takes Qt's place on the accessibility bus; false while Qt is not there yet.
    [[nodiscard]] bool install();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QDBusVirtualObject* qt_ = nullptr;
};

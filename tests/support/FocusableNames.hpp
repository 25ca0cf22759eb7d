// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QStringList>
#include <QWidget>

#include <gtest/gtest.h>

namespace quillane::fakes {

/// What assistive technologies see of the controls of a window that take the focus.
struct Focusables {
    QStringList names;    ///< in the order of the tree
    QStringList nameless; ///< each by its class and the object names above it
};

namespace detail {

inline QString pathOf(const QObject* object) {
    QString path;
    for (; object != nullptr; object = object->parent()) {
        path += QLatin1Char(' ') + QLatin1String(object->metaObject()->className()) + QLatin1Char('#') +
                object->objectName();
    }
    return path;
}

inline void collect(QAccessibleInterface* item, Focusables& found) {
    if (item == nullptr || item->state().invisible != 0) {
        return;
    }
    const bool isCell = item->object() == nullptr && (item->role() == QAccessible::Cell ||
                                                      item->role() == QAccessible::TreeItem); // which may be empty
    if (item->state().focusable != 0 && !isCell) {
        const auto name = item->text(QAccessible::Name).trimmed();
        if (name.isEmpty()) {
            found.nameless << pathOf(item->object());
        } else {
            found.names << name;
        }
    }
    for (int i = 0; i < item->childCount(); ++i) {
        collect(item->child(i), found);
    }
}

} // namespace detail

/// Of everything that can be seen on the window.
[[nodiscard]] inline Focusables focusables(QWidget& window) {
    Focusables found;
    detail::collect(QAccessible::queryAccessibleInterface(&window), found);
    return found;
}

/// Expects that each visible control that takes the focus has a name, and that there is at least one.
inline void expectNamedFocusables(QWidget& window) {
    const auto found = focusables(window);
    EXPECT_FALSE(found.names.isEmpty()) << "nothing was looked at";
    EXPECT_TRUE(found.nameless.isEmpty()) << "without a name: " << found.nameless.join('\n').toStdString();
}

} // namespace quillane::fakes

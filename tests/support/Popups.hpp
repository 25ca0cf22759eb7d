// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace quillane::fakes {

/// Opens the context menu of every visible widget of the window, as the right mouse button does, shows it to the
/// callback and closes it. Returns how many menus there were.
inline int openContextMenus(QWidget& window, const std::function<void(QMenu&)>& look) {
    int menus = 0;
    QTimer watch; // some menus run an event loop of their own
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            ++menus;
            look(*menu);
            menu->close();
        }
    });
    watch.start();
    const auto children = window.findChildren<QWidget*>();
    QList<QPointer<QWidget>> widgets(children.begin(), children.end()); // some go while menus are open
    widgets.prepend(&window);
    for (const auto& widget : widgets) {
        if (widget && widget->isVisible() && widget->window() == &window) {
            const auto middle = widget->rect().center();
            QContextMenuEvent event(QContextMenuEvent::Mouse, middle, widget->mapToGlobal(middle));
            QApplication::sendEvent(widget, &event);
            QApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    return menus;
}

/// Whether the list of an open combo box shows every row from edge to edge.
inline ::testing::AssertionResult showsEveryRow(const QComboBox& box) {
    const auto* view = box.view();
    const auto shown = view->viewport()->rect();
    for (int row = 0; row < box.count(); ++row) {
        const auto rect = view->visualRect(box.model()->index(row, box.modelColumn(), box.rootModelIndex()));
        if (rect.isEmpty() || rect.top() < shown.top() || rect.bottom() > shown.bottom()) {
            return ::testing::AssertionFailure()
                   << "row " << row << " of " << box.objectName().toStdString() << " is at " << rect.top() << " to "
                   << rect.bottom() << ", the list shows " << shown.top() << " to " << shown.bottom();
        }
        const int wanted = view->fontMetrics().horizontalAdvance(box.itemText(row));
        if (wanted > shown.width()) {
            return ::testing::AssertionFailure() << "row " << row << " of " << box.objectName().toStdString()
                                                 << " needs " << wanted << " points, the list has " << shown.width();
        }
    }
    return ::testing::AssertionSuccess();
}

/// Opens the list of every visible combo box of the window, shows it to the callback and closes it. Returns how many
/// lists there were.
inline int openDropDownLists(QWidget& window, const std::function<void(QComboBox&)>& look) {
    int lists = 0;
    const auto children = window.findChildren<QComboBox*>();
    for (const QPointer<QComboBox>& box : QList<QPointer<QComboBox>>(children.begin(), children.end())) {
        if (box && box->isVisible() && box->count() > 0) {
            box->setFocus(); // as a click or the space bar finds it
            QApplication::processEvents();
            box->showPopup();
            QApplication::processEvents();
            ++lists;
            look(*box);
            box->hidePopup();
            QApplication::processEvents();
        }
    }
    return lists;
}

} // namespace quillane::fakes

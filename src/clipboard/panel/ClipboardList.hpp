// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QListView>

#include <functional>

namespace quillane {

/// The list of the panel. Screen readers can press its rows and open their menus although the focus stays in the search
/// field.
class ClipboardList : public QListView {
    Q_OBJECT

public:
    ClipboardList();

    std::function<void(int row)> onPress;
    std::function<void(int row)> onMenu;

    QString pressName; ///< what pressing does, for screen readers
    QString menuName;  ///< what the menu offers, for screen readers

    /// Tells screen readers that keys now act on this row.
    void announce(int row);

signals:
    void rowAnnounced(int row);
};

} // namespace quillane

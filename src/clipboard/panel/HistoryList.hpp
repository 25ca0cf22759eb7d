// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QListView>

#include <functional>

namespace quillane {

/// The list of the panel. Screen readers can press its rows and open their menus although the keys stay in the search
/// field.
class HistoryList : public QListView {
    Q_OBJECT

public:
    HistoryList();

    std::function<void(int row)> onPress;
    std::function<void(int row)> onMenu;

    QString pressName; ///< what pressing does, for people
    QString menuName;  ///< what the menu offers, for people

    /// Tells screen readers that the keys are now about this row.
    void announce(int row);

signals:
    void rowAnnounced(int row);
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryList.hpp"

#include "clipboard/panel/AccessibleHistory.hpp"

namespace quillane {

HistoryList::HistoryList() {
    QAccessible::installFactory(&accessibleHistory); // Qt keeps one registration, however often it is made
}

void HistoryList::announce(int row) {
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
    emit rowAnnounced(row);
}

} // namespace quillane

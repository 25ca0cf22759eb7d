// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/ClipboardList.hpp"

#include "clipboard/panel/AccessibleHistory.hpp"

namespace quillane {

ClipboardList::ClipboardList() {
    QAccessible::installFactory(&accessibleHistory); // Qt keeps one registration, however often it is made
}

void ClipboardList::announce(int row) {
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
    emit rowAnnounced(row);
}

} // namespace quillane

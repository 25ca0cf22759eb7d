// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QAccessibleInterface;
class QComboBox;
class QObject;

namespace quillane {

/// Gives a drop-down list, and its popup, the name of its purpose.
void nameList(QComboBox& list, const QString& name);

/// For QAccessible::installFactory: the page selector as a list of tabs, and drop-down lists whose name is their
/// purpose and whose text is the selected item (Qt uses the latter as the name on Linux). Null for other objects.
[[nodiscard]] QAccessibleInterface* accessibleSettings(const QString& className, QObject* object);

} // namespace quillane

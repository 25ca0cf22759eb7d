// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QAccessibleInterface;
class QComboBox;
class QObject;

namespace quillane {

/// Gives a list to choose from, and what it opens, the name of its purpose.
void nameList(QComboBox& list, const QString& name);

/// For QAccessible::installFactory: the page selector as a list of tabs, and lists to choose from whose name says what
/// they are for and whose text is what is chosen (Qt gives them the latter for a name on Linux). Nothing for other
/// objects.
[[nodiscard]] QAccessibleInterface* accessibleSettings(const QString& className, QObject* object);

} // namespace quillane

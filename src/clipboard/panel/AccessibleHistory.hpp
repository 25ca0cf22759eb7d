// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessible>

class QObject;
class QString;

namespace quillane {

/// What screen readers see of a `ClipboardList`: a list whose rows have names, states and actions. Rows are made on
/// request. Null for every other object.
[[nodiscard]] QAccessibleInterface* accessibleHistory(const QString& className, QObject* object);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

class QLabel;
class QString;

namespace quillane {

/// A label whose text is never markup, that wraps and can be styled by its role: "secondary", "warning" or "good".
[[nodiscard]] QLabel* textLabel(const char* role = nullptr);

/// The same, with text slightly larger or smaller than the others.
[[nodiscard]] QLabel* scaledLabel(double scale, bool bold, const char* role = nullptr);

/// The same, found by its name.
[[nodiscard]] QLabel* namedLabel(const char* name);

/// Shows a text at the leading side of the layout, whatever script it is in.
void showText(QLabel& label, const QString& text);

} // namespace quillane

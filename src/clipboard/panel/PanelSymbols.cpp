// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/PanelSymbols.hpp"

namespace quillane {

QPixmap PanelSymbols::pixmap(const char* name, const QColor& color, int size, qreal ratio) {
    const auto key = QStringLiteral("%1 %2 %3 %4").arg(QLatin1String(name), color.name()).arg(size).arg(ratio);
    auto found = drawn_.find(key);
    if (found == drawn_.end()) {
        found = drawn_.insert(key, icon(name, color).pixmap(QSize(size, size), ratio));
    }
    return *found;
}

} // namespace quillane

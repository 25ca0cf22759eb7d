// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/Labels.hpp"

#include "views/WrappingLabel.hpp"

#include <QString>

namespace quillane {

QLabel* textLabel(const char* role) {
    auto* label = new WrappingLabel;
    if (role != nullptr) {
        label->setProperty("role", QLatin1String(role));
    }
    return label;
}

void showText(QLabel& label, const QString& text) {
    if (!label.alignment().testFlag(Qt::AlignHCenter)) {
        // Without this a label aligns by script: Latin names would be at the far side of a mirrored row.
        const auto side = label.layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
        label.setAlignment(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    }
    label.setText(text);
}

QLabel* scaledLabel(double scale, bool bold, const char* role) {
    auto* label = textLabel(role);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

QLabel* namedLabel(const char* name) {
    auto* label = textLabel();
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace quillane

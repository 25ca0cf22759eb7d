// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "views/RoundedCorners.hpp"

#include <QBitmap>
#include <QPainter>
#include <QWidget>

namespace quillane {

void roundCorners(QWidget& window, double radius) {
    QBitmap mask(window.size());
    mask.clear();
    QPainter painter(&mask);
    painter.setBrush(Qt::color1);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(window.rect(), radius, radius);
    painter.end();
    window.setMask(mask);
}

} // namespace quillane

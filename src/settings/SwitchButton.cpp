// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SwitchButton.hpp"

#include "views/Colors.hpp"

#include <QPainter>

namespace quillane {

namespace {

constexpr QSize pill(38, 22);
constexpr int ring = 3; ///< room for the focus ring around the pill

} // namespace

SwitchButton::SwitchButton(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SwitchButton::sizeHint() const {
    return pill + QSize(2 * ring, 2 * ring);
}

void SwitchButton::paintEvent(QPaintEvent*) {
    const auto appearance = currentAppearance();
    const auto& shades = core::brandPalette::shades(appearance);
    const auto amber = qColor(core::brandPalette::amber(appearance));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(QPointF(ring, ring), QSizeF(pill));
    const double radius = area.height() / 2;
    if (hasFocus()) {
        painter.setPen(QPen(amber, 2));
        painter.drawRoundedRect(area.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
    }
    painter.setPen(Qt::NoPen);
    painter.setOpacity(isEnabled() ? 1 : 0.45);
    painter.setBrush(isChecked() ? amber : qColor(shades.off));
    painter.drawRoundedRect(area, radius, radius);
    const bool atRight = isChecked() == (layoutDirection() == Qt::LeftToRight);
    QRectF knob(area.left() + 2, area.top() + 2, area.height() - 4, area.height() - 4);
    if (atRight) {
        knob.moveRight(area.right() - 2);
    }
    painter.setBrush(isChecked() ? qColor(shades.onAmber) : qColor(core::brandPalette::white));
    painter.drawEllipse(knob);
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/Card.hpp"

#include "views/Colors.hpp"

#include <QPainter>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr double radius = 10;
constexpr int horizontalMargin = 14;
constexpr int verticalMargin = 10;

} // namespace

Card::Card(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(0, 1, 0, 1);
    column_->setSpacing(0);
}

void Card::addRow(QWidget* row) {
    column_->addWidget(row);
}

void Card::paintEvent(QPaintEvent*) {
    const auto& shades = core::brandPalette::shades(currentAppearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(qColor(shades.hairline));
    painter.setBrush(qColor(shades.card));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    bool first = true;
    for (int i = 0; i < column_->count(); ++i) {
        const auto* row = column_->itemAt(i)->widget();
        if (row == nullptr || row->isHidden()) {
            continue;
        }
        if (!first) {
            painter.drawLine(horizontalMargin, row->y(), width() - horizontalMargin, row->y());
        }
        first = false;
    }
}

QWidget* cardRow(QLayout* content) {
    auto* row = new QWidget;
    content->setContentsMargins(horizontalMargin, verticalMargin, horizontalMargin, verticalMargin);
    row->setLayout(content);
    return row;
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/WrappingLabel.hpp"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

namespace quillane {

namespace {

/// Breaks the text into lines as QLabel does, and returns their height.
qreal breakLines(QTextLayout& layout, qreal width, qreal leading) {
    qreal height = -leading;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height += leading;
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

} // namespace

WrappingLabel::WrappingLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

void WrappingLabel::paintEvent(QPaintEvent* event) {
    if (textFormat() != Qt::PlainText) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    const auto place = QRectF(contentsRect());
    const auto direction = text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    const auto aligned = QStyle::visualAlignment(direction, alignment());
    QTextOption option(Qt::AlignAbsolute | (aligned & Qt::AlignHorizontal_Mask));
    option.setTextDirection(direction);
    option.setWrapMode(wordWrap() ? QTextOption::WordWrap : QTextOption::NoWrap);
    QTextLayout layout(text().replace(QLatin1Char('\n'), QChar::LineSeparator), font(), this);
    layout.setTextOption(option);
    const auto height = breakLines(layout, place.width(), QFontMetricsF(font(), this).leading());
    auto top = place.top();
    if (aligned.testFlag(Qt::AlignVCenter)) {
        top += (place.height() - height) / 2;
    } else if (aligned.testFlag(Qt::AlignBottom)) {
        top += place.height() - height;
    }
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, {place.left(), top});
}

} // namespace quillane

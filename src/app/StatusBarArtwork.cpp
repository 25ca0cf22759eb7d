// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/StatusBarArtwork.hpp"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace quillane::statusBarArtwork {

namespace {

// All shapes are laid out on a square of 22 units.
constexpr double unit = 22;
constexpr double dimmed = 0.45;

/// The three letters in a box of 20 × 9 units with its upper left corner at the origin.
QPainterPath letters() {
    QPainterPath path;
    path.moveTo(1, 9); // R
    path.lineTo(1, 0);
    path.lineTo(3.3, 0);
    path.arcTo(QRectF(0.9, 0, 4.8, 4.8), 90, -180);
    path.lineTo(1, 4.8);
    path.moveTo(3, 4.8);
    path.lineTo(5.4, 8.8);
    path.moveTo(8.4, 0); // T
    path.lineTo(13, 0);
    path.moveTo(10.7, 0);
    path.lineTo(10.7, 9);
    path.moveTo(15.8, 0); // L
    path.lineTo(15.8, 9);
    path.lineTo(19.2, 9);
    return path;
}

void drawLetters(QPainter& painter, double top, double opacity) {
    painter.save();
    painter.setOpacity(opacity);
    painter.translate(0.9, top);
    painter.strokePath(letters(), QPen(Qt::black, 1.8, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.restore();
}

void drawPauseSign(QPainter& painter) {
    painter.fillRect(QRectF(7.5, 14, 2.5, 7), Qt::black);
    painter.fillRect(QRectF(12, 14, 2.5, 7), Qt::black);
}

void drawCup(QPainter& painter) {
    QPainterPath cup;
    cup.moveTo(5.5, 13.5);
    cup.lineTo(14.5, 13.5);
    cup.lineTo(14.5, 16.5);
    cup.arcTo(QRectF(8.5, 13.5, 6, 6), 0, -90);
    cup.lineTo(8.5, 19.5);
    cup.arcTo(QRectF(5.5, 13.5, 6, 6), 270, -90);
    cup.closeSubpath();
    painter.fillPath(cup, Qt::black);
    painter.setPen(QPen(Qt::black, 1.2));
    painter.drawArc(QRectF(13, 14, 4.2, 3.6), 100 * 16, -200 * 16);
    painter.fillRect(QRectF(4.5, 20.3, 11, 1.2), Qt::black);
}

void draw(QPainter& painter, StatusMark mark) {
    switch (mark) {
    case StatusMark::plain:
        drawLetters(painter, 6.5, 1);
        break;
    case StatusMark::paused:
        drawLetters(painter, 2, dimmed);
        drawPauseSign(painter);
        break;
    case StatusMark::keepAwake:
        drawLetters(painter, 2, 1);
        drawCup(painter);
        break;
    }
}

} // namespace

TemplateImage image(StatusMark mark, int points, double scale) {
    const int side = static_cast<int>(std::lround(points * scale));
    QImage canvas(side, side, QImage::Format_Alpha8);
    canvas.fill(0);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / unit, side / unit);
    draw(painter, mark);
    painter.end();

    TemplateImage result{side, side, scale, {}};
    result.coverage.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int y = 0; y < side; ++y) {
        const auto* line = reinterpret_cast<const std::byte*>(canvas.constScanLine(y));
        result.coverage.insert(result.coverage.end(), line, line + side);
    }
    return result;
}

} // namespace quillane::statusBarArtwork

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/RowMenuStyle.hpp"

#include <QPainter>
#include <QStyleOptionMenuItem>

namespace quillane {

namespace {

constexpr int markSize = 14;
constexpr int markMargin = 8;

/// The key after the tab, isolated from the title's direction (Unicode Standard Annex 9, LRI and PDI).
QString withIsolatedKey(const QString& text) {
    const auto tab = text.indexOf(QLatin1Char('\t'));
    if (tab < 0) {
        return text;
    }
    return text.left(tab + 1) + QChar(0x2066) + text.mid(tab + 1) + QChar(0x2069);
}

void drawCheckMark(QPainter& painter, const QStyleOptionMenuItem& item) {
    const bool selected = item.state.testFlag(QStyle::State_Selected);
    const QColor color = item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const QRect logical(item.rect.right() - markMargin - markSize, item.rect.center().y() - markSize / 2, markSize,
                        markSize);
    const QRectF box = QStyle::visualRect(item.direction, item.rect, logical);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&](double x, double y) { return QPointF(box.x() + x * box.width(), box.y() + y * box.height()); };
    painter.drawPolyline(QPolygonF{at(0.12, 0.55), at(0.40, 0.82), at(0.88, 0.2)});
    painter.restore();
}

} // namespace

void RowMenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* given = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || !given || given->menuItemType == QStyleOptionMenuItem::Separator) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionMenuItem item(*given);
    item.text = withIsolatedKey(item.text);
    const bool checked = item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked;
    item.checkType = QStyleOptionMenuItem::NotCheckable;
    QProxyStyle::drawControl(element, &item, painter, widget);
    if (checked) {
        drawCheckMark(*painter, item);
    }
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HelpCard.hpp"

#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace quillane {

namespace {

constexpr int cardWidth = 320;
constexpr int distance = 6; ///< from the widget

} // namespace

HelpCard::HelpCard(QWidget* parent) : QLabel(parent) {
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                   Qt::WindowTransparentForInput);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setObjectName(QStringLiteral("helpCard"));
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setFixedWidth(cardWidth);
}

void HelpCard::setParagraphs(const QStringList& paragraphs, Qt::LayoutDirection direction) {
    setLayoutDirection(direction);
    const auto opening = direction == Qt::RightToLeft ? QStringLiteral("<p dir='rtl'>") : QStringLiteral("<p>");
    QString text;
    for (const auto& paragraph : paragraphs) {
        text += opening + paragraph.toHtmlEscaped() + QStringLiteral("</p>");
    }
    setText(text);
}

void HelpCard::showBeside(const QWidget& widget) {
    resize(cardWidth, heightForWidth(cardWidth));
    const QRect anchor(widget.mapToGlobal(QPoint(0, 0)), widget.size());
    const auto screen = widget.screen()->availableGeometry();
    // On the side where reading begins, the card does not extend beyond the widget.
    auto place = QStyle::alignedRect(layoutDirection(), Qt::AlignRight | Qt::AlignTop, size(), anchor);
    place.moveBottom(anchor.top() - distance);
    if (place.top() < screen.top()) {
        place.moveTop(anchor.bottom() + distance);
    }
    place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() + 1 - width())));
    move(place.topLeft());
    show();
    raise();
}

} // namespace quillane

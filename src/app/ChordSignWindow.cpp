// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/ChordSignWindow.hpp"

#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/RoundedCorners.hpp"
#include "views/Text.hpp"

#include <QAccessibleWidget>
#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

constexpr int symbolSide = 20;
constexpr int maximumTextWidth = 320;
constexpr double cornerRadius = 8;

/// Screen readers speak a notification when it is shown.
QAccessibleInterface* accessibleSign(const QString& /*className*/, QObject* object) {
    auto* sign = qobject_cast<ChordSignWindow*>(object);
    return sign != nullptr ? new QAccessibleWidget(sign, QAccessible::Notification) : nullptr; // owned by Qt
}

void announce(QWidget& sign) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(&sign, sign.accessibleName());
#else
    QAccessibleEvent event(&sign, QAccessible::ObjectShow); // which Qt does not send for tool tips
#endif
    QAccessible::updateAccessibility(&event);
}

core::ScreenRect screenRect(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

const QScreen& screenAt(const QPoint& point) {
    const auto* screen = QGuiApplication::screenAt(point);
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

/// The cursor in the units of Qt. Those of an X11 desktop are pixels, and Qt places its screens by them.
core::ScreenRect inUnitsOfQt(const AXRect& place) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        for (const auto* screen : QGuiApplication::screens()) {
            const auto corner = screen->geometry().topLeft();
            const double scale = screen->devicePixelRatio();
            const QRectF pixels(corner, QSizeF(screen->geometry().size()) * scale);
            if (pixels.contains(place.x, place.y)) {
                return {corner.x() + (place.x - corner.x()) / scale, corner.y() + (place.y - corner.y()) / scale,
                        place.width / scale, place.height / scale};
            }
        }
    }
    return {place.x, place.y, place.width, place.height};
}

} // namespace

ChordSignWindow::ChordSignWindow(WindowTraits& windowTraits, Symbol symbol)
    : symbol_(std::move(symbol)), symbols_(new QLabel), text_(namedLabel("text")) {
    QAccessible::installFactory(accessibleSign);
    setObjectName(QStringLiteral("chordSign"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 6, 10, 6);
    row->setSpacing(8);
    row->addWidget(symbols_);
    row->addWidget(text_, 1);
    windowTraits.makePanel(*this, PanelKind::sign);
}

void ChordSignWindow::present(const core::ChordSign& sign, core::AppLanguage language,
                              const std::optional<AXRect>& caret) {
    if (isVisible()) {
        dismiss(); // one notification ends before the next
    }
    sign_ = sign;
    language_ = language;
    draw();
    place(caret);
    show();
    raise();
    announce(*this);
}

void ChordSignWindow::dismiss() {
    if (!isVisible()) {
        return;
    }
    hide();
    QAccessibleEvent event(this, QAccessible::ObjectHide);
    QAccessible::updateAccessibility(&event);
}

void ChordSignWindow::draw() {
    appearance_ = currentAppearance();
    setLayoutDirection(directionOf(language_));
    setStyleSheet(controlsStyleSheet(appearance_));
    setAccessibleName(rendered(sign_.announcement, language_));
    symbols_->setPixmap(drawnSymbols());
    const auto text = sign_.text ? rendered(*sign_.text, language_) : QString();
    showText(*text_, text);
    text_->setVisible(!text.isEmpty());
    const int width = std::min(text_->fontMetrics().horizontalAdvance(text) + 2, maximumTextWidth);
    text_->setFixedSize(width, std::max(0, text_->heightForWidth(width)));
    layout()->activate(); // it would keep a text that was longer
    resize(layout()->totalSizeHint());
    update();
}

QPixmap ChordSignWindow::drawnSymbols() const {
    const double scale = devicePixelRatioF();
    const auto count = static_cast<int>(sign_.symbols.size());
    QPixmap pixmap(QSize(symbolSide * count, symbolSide) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    const auto color =
        qColor(sign_.text ? core::brandPalette::amber(appearance_) : core::brandPalette::primary(appearance_));
    for (int index = 0; index < count && symbol_; ++index) {
        const auto icon = symbol_(std::string(sign_.symbols.at(static_cast<std::size_t>(index))), color);
        icon.paint(&painter, QRect(index * symbolSide, 0, symbolSide, symbolSide));
    }
    return pixmap;
}

void ChordSignWindow::place(const std::optional<AXRect>& caret) {
    const auto pointer = QCursor::pos();
    const auto at = caret ? inUnitsOfQt(*caret)
                          : core::ScreenRect{static_cast<double>(pointer.x()), static_cast<double>(pointer.y()), 0,
                                             static_cast<double>(symbolSide)}; // below the pointer's own picture
    const auto& screen = screenAt(QPointF(at.x + at.width / 2, at.y + at.height / 2).toPoint());
    const auto frame = core::chordSignPlacement::frame(at, screenRect(screen.availableGeometry()),
                                                       {static_cast<double>(width()), static_cast<double>(height())});
    move(QPointF(frame.x, frame.y).toPoint());
}

void ChordSignWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    roundCorners(*this, cornerRadius);
}

void ChordSignWindow::paintEvent(QPaintEvent* /*event*/) {
    const auto& shades = core::brandPalette::shades(appearance_);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(qColor(shades.card));
    painter.setPen(QPen(qColor(shades.outline), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace quillane

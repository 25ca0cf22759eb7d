// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/capture/AreaOverlayWindow.hpp"

#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"

#include <QAccessible>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace quillane {

namespace texts = core::texts;

namespace {

// In points; the screen's scale gives the pixels of a point.
constexpr double fontSize = 13;
constexpr double labelMargin = 8;
constexpr double labelGap = 6;
constexpr double hintDistance = 48;

constexpr QColor dimming{0, 0, 0, 110};
constexpr QColor labelGround{20, 20, 22, 225};
constexpr QColor labelEdge{255, 255, 255, 60};

} // namespace

AreaOverlayWindow::AreaOverlayWindow(AreaOverlay& overlay, std::size_t picture)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint),
      overlay_(overlay),
      picture_(picture) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setScreen(this->picture().screen);
    setGeometry(this->picture().screen->geometry());
    labelFont_.setPixelSize(scaled(fontSize));
    setObjectName(QStringLiteral("areaOverlay"));
    setAccessibleName(rendered(texts::selectAreaToCapture));
}

// Geometry

int AreaOverlayWindow::scaled(double length) const {
    return qRound(length * devicePixelRatioF());
}

QRect AreaOverlayWindow::here(const core::PixelRect& area) const {
    return {area.x - picture().area.x, area.y - picture().area.y, area.width, area.height};
}

core::PixelPoint AreaOverlayWindow::pointOf(const QMouseEvent& event) const {
    // Qt rounds the position in the widget to whole points while a widget has the pointer, but not the one in the
    // window.
    const auto inside = event.scenePosition() * devicePixelRatioF();
    return {picture().area.x + qRound(inside.x()), picture().area.y + qRound(inside.y())};
}

bool AreaOverlayWindow::holds(core::PixelPoint point) const {
    std::vector<core::PixelRect> screens;
    std::ranges::transform(overlay_.pictures(), std::back_inserter(screens), &ScreenPicture::area);
    return core::screenAt(screens, point) == picture_;
}

QSize AreaOverlayWindow::labelSize(const QString& text) const {
    const QFontMetrics metrics(labelFont_);
    return {metrics.horizontalAdvance(text) + 2 * scaled(labelMargin), metrics.height() + scaled(labelMargin)};
}

QRect AreaOverlayWindow::sizeLabel() const {
    const auto area = overlay_.selection().area();
    const auto corner = overlay_.selection().corner();
    if (!area || !holds(corner)) {
        return {};
    }
    const auto size = labelSize(sizeText());
    return here(core::sizeLabelPlace(*area, corner, {size.width(), size.height()}, picture().area, scaled(labelGap)));
}

QRect AreaOverlayWindow::hint() const {
    const auto& selection = overlay_.selection();
    if (selection.area() || selection.isPressed() || !holds(selection.corner())) {
        return {};
    }
    const auto size = labelSize(hintText());
    const auto& screen = picture().area;
    return {(screen.width - size.width()) / 2, screen.height - size.height() - scaled(hintDistance), size.width(),
            size.height()};
}

// Texts

QString AreaOverlayWindow::rendered(const core::LocalizedText& text) const {
    return QString::fromStdString(text.rendered(overlay_.language()));
}

QString AreaOverlayWindow::sizeText() const {
    const auto area = overlay_.selection().area();
    return area ? QString::fromStdString(core::productText(area->width, area->height)) : QString();
}

QString AreaOverlayWindow::hintText() const {
    return rendered(texts::selectAreaToCapture);
}

void AreaOverlayWindow::announce() {
    if (const auto area = overlay_.selection().area()) {
        setAccessibleDescription(rendered(texts::areaSize(std::to_string(area->width), std::to_string(area->height))));
    } else {
        QAccessibleEvent focus(this, QAccessible::Focus);
        QAccessible::updateAccessibility(&focus);
    }
}

// Drawing

QRegion AreaOverlayWindow::drawn() const {
    QRegion region;
    if (const auto area = overlay_.selection().area()) {
        const int line = 2 * scaled(1);
        region += here(*area).adjusted(-line, -line, line, line);
    }
    return region + sizeLabel() + hint();
}

void AreaOverlayWindow::redraw(const QRegion& region) {
    const double scale = 1 / devicePixelRatioF();
    for (const auto& rect : region) {
        const QRectF inWidget(rect.x() * scale, rect.y() * scale, rect.width() * scale, rect.height() * scale);
        update(inWidget.toAlignedRect());
    }
}

void AreaOverlayWindow::paintEvent(QPaintEvent* event) {
    const double scale = devicePixelRatioF();
    const auto& exposed = event->rect();
    const auto part =
        QRectF(exposed.x() * scale, exposed.y() * scale, exposed.width() * scale, exposed.height() * scale)
            .toAlignedRect();
    QPainter painter(this);
    painter.scale(1 / scale, 1 / scale);
    painter.drawImage(part.topLeft(), picture().image, part);
    QRegion dimmed(part);
    const auto area = overlay_.selection().area();
    if (area) {
        dimmed -= here(*area);
    }
    for (const auto& rect : dimmed) {
        painter.fillRect(rect, dimming);
    }
    if (area) { // a light line inside a dark one is visible on every background; the area itself is not drawn on
        const int line = scaled(1);
        const auto inner = here(*area).adjusted(-line, -line, line, line);
        const auto outer = inner.adjusted(-line, -line, line, line);
        for (const auto& rect : QRegion(outer) - inner) {
            painter.fillRect(rect, QColor(0, 0, 0, 150));
        }
        for (const auto& rect : QRegion(inner) - here(*area)) {
            painter.fillRect(rect, Qt::white);
        }
    }
    drawLabel(painter, sizeLabel(), sizeText());
    drawLabel(painter, hint(), hintText());
}

void AreaOverlayWindow::drawLabel(QPainter& painter, const QRect& place, const QString& text) const {
    if (place.isEmpty()) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(labelEdge, scaled(1)));
    painter.setBrush(labelGround);
    const double half = scaled(1) / 2.0; // a line is drawn half on each side of its position
    painter.drawRoundedRect(QRectF(place).adjusted(half, half, -half, -half), scaled(5), scaled(5));
    painter.setPen(Qt::white);
    painter.setFont(labelFont_);
    painter.setLayoutDirection(core::isRTL(overlay_.language()) ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, text);
}

// Input

bool AreaOverlayWindow::grabInput() {
    auto* window = windowHandle();
    if (!window || !window->isExposed() || !window->setKeyboardGrabEnabled(true)) {
        return false;
    }
    if (!window->setMouseGrabEnabled(true)) {
        window->setKeyboardGrabEnabled(false);
        return false;
    }
    grabKeyboard(); // so that this widget gets key events even while another window of this program has the focus
    grabMouse();
    return true;
}

void AreaOverlayWindow::releaseInput() {
    if (QWidget::keyboardGrabber() == this) {
        releaseMouse();
        releaseKeyboard();
    }
}

void AreaOverlayWindow::mousePressEvent(QMouseEvent* event) {
    overlay_.mousePress(event->button(), pointOf(*event));
}

void AreaOverlayWindow::mouseMoveEvent(QMouseEvent* event) {
    overlay_.mouseMove(pointOf(*event));
}

void AreaOverlayWindow::mouseReleaseEvent(QMouseEvent* event) {
    overlay_.mouseRelease(event->button(), pointOf(*event));
}

void AreaOverlayWindow::keyPressEvent(QKeyEvent* event) {
    overlay_.keyPress(*event);
}

void AreaOverlayWindow::keyReleaseEvent(QKeyEvent* event) {
    overlay_.keyRelease(*event);
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanel.hpp"

#include "core/clipboard/ClipboardPanelPlacement.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"
#include "views/Colors.hpp"
#include "views/RoundedCorners.hpp"
#include "views/Text.hpp"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace quillane {

namespace {

constexpr qreal cornerRadius = 12;

/// The rules count upward from below.
core::Rect flipped(const QRect& rect) {
    return {static_cast<double>(rect.left()), -static_cast<double>(rect.top() + rect.height()),
            static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

/// On macOS the panel's window has an invisible title bar; Qt 6.8 and later would keep a strip free for it.
void ignoreSafeArea(QWidget& window) {
    window.setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea, false);
    for (auto* part : window.findChildren<QWidget*>()) {
        part->setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea, false);
    }
}

QRect flipped(const core::Rect& rect) {
    return QRectF(rect.x, -rect.maxY(), rect.width, rect.height).toRect();
}

} // namespace

HistoryPanel::HistoryPanel(const HistoryPanelServices& services)
    : panel_(services.panel), view_(new ClipboardHistoryView(services)) {
    services.platform.windowTraits->makePanel(*this, PanelKind::search);
    setObjectName(QStringLiteral("historyPanel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(view_);
    ignoreSafeArea(*this);
    resize(preferredSize);
    const auto name = [this, &preferences = services.preferences] {
        const auto title = rendered(core::texts::clipboardHistory, preferences.state().language);
        setWindowTitle(title);
        setAccessibleName(title);
    };
    panel_.onShow = [this, name] {
        name();
        present();
    };
    panel_.onClose = [this] {
        hide();
        view_->end();
    };
}

HistoryPanel::~HistoryPanel() {
    panel_.onShow = nullptr;
    panel_.onClose = nullptr;
}

void HistoryPanel::present() {
    const auto* keys = QGuiApplication::focusWindow();
    lostKeysBefore_ = keys != nullptr && !keys->isVisible();
    sinceOpening_.start();
    view_->begin();
    place();
    showInFront();
}

void HistoryPanel::showInFront() {
    show();
    raise();
    activateWindow();
    view_->shown();
}

void HistoryPanel::place() {
    const auto pointer = QCursor::pos();
    const auto* screen = QGuiApplication::screenAt(pointer);
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    const auto at =
        panel_.options().popupAtCursor
            ? std::optional(core::Point{static_cast<double>(pointer.x()), -static_cast<double>(pointer.y())})
            : std::nullopt;
    setGeometry(flipped(core::clipboardPanelPlacement::frame(
        at, flipped(screen->availableGeometry()),
        {static_cast<double>(preferredSize.width()), static_cast<double>(preferredSize.height())})));
}

bool HistoryPanel::event(QEvent* event) {
    // The panel's own menu takes the keyboard for a while.
    if (event->type() == QEvent::WindowDeactivate && !windowFlags().testFlag(Qt::Popup) &&
        QApplication::activePopupWidget() == nullptr) {
        panel_.close();
    }
    return QWidget::event(event);
}

void HistoryPanel::keyPressEvent(QKeyEvent* event) {
    if (!view_->handleKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}

void HistoryPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous() || !panel_.isVisible()) {
        return;
    }
    if (isHiddenForLostKeys()) {
        lostKeysBefore_ = false;
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (panel_.isVisible()) {
                    showInFront();
                }
            },
            Qt::QueuedConnection);
        return;
    }
    panel_.close(); // a click elsewhere hides a pop-up
}

/// On X11 Qt declares the application inactive a moment after a window of it that had the keys has closed, and then
/// closes every pop-up: this panel too, when it has opened meanwhile.
bool HistoryPanel::isHiddenForLostKeys() const {
    constexpr qint64 moment = 400; // in milliseconds; Qt's is 100, more when the application is busy
    return lostKeysBefore_ && sinceOpening_.elapsed() < moment &&
           QGuiApplication::applicationState() != Qt::ApplicationActive;
}

void HistoryPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if ((windowFlags() & Qt::WindowType_Mask) != Qt::Popup) {
        return; // the desktop rounds the corners itself
    }
    roundCorners(*this, cornerRadius);
}

void HistoryPanel::paintEvent(QPaintEvent* /*event*/) {
    const auto& shades = core::brandPalette::shades(currentAppearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), qColor(shades.window));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(qColor(shades.outline), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace quillane

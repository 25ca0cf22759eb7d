// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionDragGuideView.hpp"

#include "core/localization/Texts.hpp"
#include "permissions/PermissionAppChip.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr double radius = 14;
constexpr int closeSide = 18;
constexpr int margin = 14;
constexpr int bodySpace = 18;
constexpr int wordsSpace = 6;
constexpr double titleScale = 1.2;
constexpr int minimumPercent = 60; ///< for text that would not fit otherwise

core::ScreenRect screenRect(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

} // namespace

PermissionDragGuideView::PermissionDragGuideView(PermissionCardServices services)
    : services_(std::move(services)),
      chip_(nullptr),
      heading_(namedLabel("permission")),
      drag_(namedLabel("drag")),
      next_(namedLabel("next")),
      close_(new QToolButton) {
    build();
    connect(close_, &QToolButton::clicked, this, &PermissionDragGuideView::closeRequested);
    subscriptions_.push_back(services_.preferences.onChanged([this] { redraw(); }));
    subscriptions_.push_back(services_.permissions.onChanged([this] { redraw(); }));
    QCoreApplication::instance()->installEventFilter(this); // a style sheet keeps palette changes from its widgets
    redraw();
}

void PermissionDragGuideView::build() {
    heading_->setProperty("role", QStringLiteral("secondary"));
    close_->setObjectName(QStringLiteral("close"));
    close_->setAutoRaise(true);
    close_->setIconSize({closeSide, closeSide});
    close_->setFocusPolicy(Qt::StrongFocus);
    chip_ = new PermissionAppChip(
        QUrl::fromLocalFile(QString::fromStdString(services_.permissions.location().application.string())),
        services_.applicationIcon);

    auto* top = new QHBoxLayout;
    top->addWidget(heading_, 1);
    top->addWidget(close_);
    auto* words = new QVBoxLayout;
    words->setSpacing(wordsSpace);
    words->addStretch();
    words->addWidget(drag_);
    words->addWidget(next_);
    words->addStretch();
    auto* body = new QHBoxLayout;
    body->setSpacing(bodySpace);
    body->addWidget(chip_);
    body->addLayout(words, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(4);
    column->addLayout(top);
    column->addLayout(body, 1);
    column->setSizeConstraint(QLayout::SetNoConstraint); // a small screen makes the card small
}

void PermissionDragGuideView::setPermission(core::MacPermission permission) {
    permission_ = permission;
    redraw();
}

void PermissionDragGuideView::redraw() {
    const auto language = services_.preferences.state().language;
    const bool granted = services_.permissions.granted().contains(permission_);
    const bool mirrored = core::isRTL(language);
    const auto appearance = currentAppearance();
    setLayoutDirection(directionOf(language));
    next_->setProperty("role", granted ? QStringLiteral("good") : QStringLiteral("secondary"));
    setStyleSheet(controlsStyleSheet(appearance));
    // Lines are aligned to the leading side, whatever script they begin with.
    const auto side = (mirrored ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter;
    for (auto* label : {heading_, drag_, next_}) {
        label->setAlignment(side);
    }
    heading_->setText(permission_ == core::MacPermission::accessibility ? rendered(texts::accessibility, language)
                                                                        : rendered(texts::inputMonitoring, language));
    drag_->setText(rendered(texts::dragIntoList, language));
    next_->setText(granted ? rendered(texts::permissionGranted, language)
                           : rendered(texts::turnOnSwitchAfterDropping, language));
    if (services_.symbol) {
        close_->setIcon(services_.symbol("xmark.circle", qColor(core::brandPalette::shades(appearance).secondary)));
    }
    close_->setAccessibleName(rendered(texts::close, language));
    close_->setToolTip(rendered(texts::close, language));
    setAccessibleName(rendered(texts::permissionGuide, language));
    window()->setWindowTitle(rendered(texts::permissionGuide, language));
    fitWords();
    update();
}

void PermissionDragGuideView::fitWords() {
    // The card keeps its size at any text size: if a line would be cut, all lines become smaller.
    const int width = this->width() - 2 * margin - bodySpace - chip_->sizeHint().width();
    const int top = std::max(heading_->sizeHint().height(), close_->sizeHint().height());
    const int height = this->height() - 2 * margin - top - wordsSpace;
    for (int percent = 100; percent >= minimumPercent; percent -= 5) {
        const double scale = percent / 100.0;
        auto title = font();
        title.setPointSizeF(font().pointSizeF() * titleScale * scale);
        title.setBold(true);
        auto line = font();
        line.setPointSizeF(font().pointSizeF() * scale);
        drag_->setFont(title);
        next_->setFont(line);
        if (drag_->heightForWidth(width) + wordsSpace + next_->heightForWidth(width) <= height) {
            break;
        }
    }
}

void PermissionDragGuideView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitWords();
}

bool PermissionDragGuideView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        redraw();
    }
    return QWidget::eventFilter(watched, event);
}

void PermissionDragGuideView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        emit closeRequested();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PermissionDragGuideView::paintEvent(QPaintEvent*) {
    const auto& shades = core::brandPalette::shades(currentAppearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(qColor(shades.outline));
    painter.setBrush(qColor(shades.card));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

PermissionDragGuideWindow::PermissionDragGuideWindow(const PermissionCardServices& services)
    : view_(new PermissionDragGuideView(services)) {
    setObjectName(QStringLiteral("permissionGuide"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addWidget(view_);
    services.windowTraits.makePanel(*this, PanelKind::card);
    connect(view_, &PermissionDragGuideView::closeRequested, this, &QWidget::close);
}

void PermissionDragGuideWindow::setFrame(const core::ScreenRect& frame) {
    setGeometry(QRectF(frame.x, frame.y, frame.width, frame.height).toRect());
}

void PermissionDragGuideWindow::orderFront() {
    show();
    raise();
}

void PermissionDragGuideWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    if (closed) {
        closed();
    }
}

std::vector<ScreenArea> currentScreens() {
    std::vector<ScreenArea> screens;
    const auto* main = QGuiApplication::primaryScreen();
    for (const auto* screen : QGuiApplication::screens()) {
        screens.insert(screen == main ? screens.begin() : screens.end(),
                       {screenRect(screen->geometry()), screenRect(screen->availableGeometry())});
    }
    return screens;
}

} // namespace quillane

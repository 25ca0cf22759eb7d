// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsWindow.hpp"

#include "core/localization/Texts.hpp"
#include "settings/SettingsView.hpp"
#include "settings/WindowFrame.hpp"
#include "views/Text.hpp"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr QSize contentSize(760, 780);
constexpr QSize smallest(740, 720);
constexpr auto settled = 500ms; ///< after the last move

/// For a window that the window manager has not decorated yet.
constexpr QMargins expectedDecoration(0, 36, 0, 0);

/// The screen that a window with this frame covers most; none when its title bar cannot be reached on any.
QScreen* screenFor(const QRect& frame) {
    QScreen* best = nullptr;
    int largest = 0;
    for (auto* screen : QGuiApplication::screens()) {
        const auto area = screen->availableGeometry();
        const auto shared = area.intersected(frame);
        if (windowFrame::isReachable(frame, area) && shared.width() * shared.height() > largest) {
            largest = shared.width() * shared.height();
            best = screen;
        }
    }
    return best;
}

} // namespace

SettingsWindow::SettingsWindow(SettingsServices services)
    : services_(std::move(services)),
      view_(new SettingsView(services_)),
      languageChange_(services_.preferences.onChanged([this] { retitle(); })) {
    setObjectName(QStringLiteral("settings"));
    setWindowIcon(services_.applicationIcon);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
    view_->setFocusPolicy(Qt::ClickFocus);
    frameChanged_.setSingleShot(true);
    frameChanged_.setInterval(settled);
    connect(&frameChanged_, &QTimer::timeout, this, [this] {
        isOpening_ = false;
        saveFrame();
    });
    retitle();
    restoreFrame();
}

void SettingsWindow::present(core::SettingsPage page) {
    services_.model.setPage(page);
    view_->refreshIfStale();
    services_.platform.windowTraits->setActivationPolicy(ActivationPolicy::regular);
    services_.platform.windowTraits->activateApplication();
    fitMinimumSize();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    if (isOpening_) {
        fitScreen();
        frameChanged_.start();
    }
    connect(windowHandle(), &QWindow::screenChanged, this, &SettingsWindow::fitMinimumSize, Qt::UniqueConnection);
    raise();
    activateWindow();
    if (focusWidget() == nullptr) {
        view_->setFocus(); // nothing is highlighted until the user uses the keyboard
    }
}

void SettingsWindow::refresh() {
    view_->redraw();
}

bool SettingsWindow::showsPermissions() const {
    return isVisible() && services_.model.page() == core::SettingsPage::permissions;
}

bool SettingsWindow::isTextBoxFocused() const {
    return isActiveWindow() && view_->isTextBoxFocused();
}

void SettingsWindow::apply(core::WritingDirection direction) {
    view_->apply(direction);
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
    saveFrame();
    QWidget::closeEvent(event);
    services_.platform.windowTraits->setActivationPolicy(ActivationPolicy::accessory);
}

void SettingsWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    frameHasChanged();
}

void SettingsWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    frameHasChanged();
}

void SettingsWindow::frameHasChanged() {
    if (isVisible()) {
        if (isOpening_) {
            fitScreen(); // the window manager has placed and decorated the window
        }
        frameChanged_.start();
    }
}

void SettingsWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && services_.model.refresh) {
        services_.model.refresh(); // the user may come from the system's settings
    }
}

void SettingsWindow::restoreFrame() {
    const auto stored = services_.platform.userDefaults->string(frameKey);
    const auto frame = stored ? windowFrame::parse(*stored) : std::nullopt;
    auto* screen = frame ? screenFor(*frame) : nullptr;
    if (screen != nullptr) {
        setScreen(screen);
    }
    fitMinimumSize();
    resize(screen != nullptr ? frame->size() : contentSize);
    move(screen != nullptr ? frame->topLeft() : this->screen()->availableGeometry().center() - rect().center());
    fitScreen();
    frame_ = QRect(pos(), size());
}

QMargins SettingsWindow::decoration() const {
    const auto outside = frameGeometry();
    const auto inside = geometry();
    return isVisible() ? QMargins(inside.left() - outside.left(), inside.top() - outside.top(),
                                  outside.right() - inside.right(), outside.bottom() - inside.bottom())
                       : expectedDecoration;
}

void SettingsWindow::fitMinimumSize() {
    setMinimumSize(smallest.boundedTo(screen()->availableGeometry().marginsRemoved(decoration()).size()));
}

void SettingsWindow::fitScreen() {
    if (windowState() != Qt::WindowNoState) {
        return;
    }
    const auto margins = decoration();
    const QRect frame(pos(), size().grownBy(margins));
    const auto fitted = windowFrame::fitted(frame, screen()->availableGeometry());
    if (fitted != frame) {
        fitMinimumSize();
        resize(fitted.size().shrunkBy(margins));
        move(fitted.topLeft());
    }
}

void SettingsWindow::saveFrame() {
    frameChanged_.stop();
    if (windowState() == Qt::WindowNoState) {
        frame_ = QRect(pos(), size());
    }
    if (auto text = windowFrame::stored(frame_); services_.platform.userDefaults->string(frameKey) != text) {
        services_.platform.userDefaults->setObject(frameKey, std::move(text));
    }
}

void SettingsWindow::retitle() {
    const auto title = rendered(core::texts::settingsWindowTitle, services_.preferences.state().language);
    setWindowTitle(title);
    view_->setAccessibleName(title); // it has the focus until a control gets it
}

} // namespace quillane

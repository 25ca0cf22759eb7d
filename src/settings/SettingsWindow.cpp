// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsWindow.hpp"

#include "core/localization/Texts.hpp"
#include "settings/SettingsView.hpp"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr QSize contentSize(760, 780);
constexpr QSize smallest(740, 720);
constexpr auto settled = 500ms; ///< after the last move

QRect frameOf(const std::string& stored) {
    const auto parts = QString::fromStdString(stored).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    std::array<int, 4> numbers{};
    if (parts.size() < static_cast<qsizetype>(numbers.size())) {
        return {};
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool ok = false;
        numbers.at(i) = parts.at(static_cast<qsizetype>(i)).toInt(&ok);
        if (!ok) {
            return {};
        }
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

/// A window whose title bar cannot be reached on any screen is of no use.
bool isReachable(const QRect& frame) {
    const QRect bar(frame.left(), frame.top(), frame.width(), 40);
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        const auto shared = screen->availableGeometry().intersected(bar);
        return shared.width() >= 80 && shared.height() >= 20;
    });
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
    setMinimumSize(smallest);
    resize(contentSize);
    frameChanged_.setSingleShot(true);
    frameChanged_.setInterval(settled);
    connect(&frameChanged_, &QTimer::timeout, this, [this] { saveFrame(); });
    retitle();
    restoreFrame();
}

void SettingsWindow::present(core::SettingsPage page) {
    services_.model.setPage(page);
    view_->refreshIfStale();
    services_.windowTraits.setActivationPolicy(ActivationPolicy::regular);
    services_.windowTraits.activateApplication();
    if (isMinimized()) {
        showNormal();
    } else {
        show();
    }
    raise();
    activateWindow();
    if (focusWidget() == nullptr) {
        view_->setFocus(); // nothing is highlighted until somebody uses the keyboard
    }
}

void SettingsWindow::refresh() {
    view_->redraw();
}

bool SettingsWindow::showsPermissions() const {
    return isVisible() && services_.model.page() == core::SettingsPage::permissions;
}

bool SettingsWindow::apply(core::WritingDirection direction) {
    return isActiveWindow() && view_->apply(direction);
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
    saveFrame();
    QWidget::closeEvent(event);
    services_.windowTraits.setActivationPolicy(ActivationPolicy::accessory);
}

void SettingsWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible()) {
        frameChanged_.start();
    }
}

void SettingsWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (isVisible()) {
        frameChanged_.start();
    }
}

void SettingsWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        services_.loginItem.refresh(); // the user may come from the system's settings
        services_.permissions.refresh();
    }
}

void SettingsWindow::restoreFrame() {
    const auto stored = services_.userDefaults.string(frameKey);
    const auto frame = stored ? frameOf(*stored) : QRect();
    if (!frame.isEmpty() && isReachable(frame)) {
        resize(frame.size());
        move(frame.topLeft());
    } else if (const auto* screen = QGuiApplication::primaryScreen()) {
        move(screen->availableGeometry().center() - rect().center());
    }
}

void SettingsWindow::saveFrame() {
    frameChanged_.stop();
    const auto place = isMaximized() ? normalGeometry() : QRect(pos(), size());
    const auto text =
        QStringLiteral("%1 %2 %3 %4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
    services_.userDefaults.setObject(frameKey, text.toStdString());
}

void SettingsWindow::retitle() {
    setWindowTitle(
        QString::fromStdString(core::texts::settingsWindowTitle.rendered(services_.preferences.state().language)));
}

} // namespace quillane

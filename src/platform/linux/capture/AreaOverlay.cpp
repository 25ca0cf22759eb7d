// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/capture/AreaOverlay.hpp"

#include "platform/linux/capture/AreaOverlayWindow.hpp"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenGrabs = 20ms;
constexpr int lastGrab = 100; // two seconds
constexpr int arrowStep = 10;

std::vector<core::PixelRect> areasOf(const std::vector<ScreenPicture>& pictures) {
    std::vector<core::PixelRect> areas;
    std::ranges::transform(pictures, std::back_inserter(areas), &ScreenPicture::area);
    return areas;
}

/// Where the pointer is now.
core::PixelPoint pointerOn(const std::vector<ScreenPicture>& pictures) {
    for (const auto& picture : pictures) {
        const auto geometry = picture.screen->geometry();
        if (geometry.contains(QCursor::pos(picture.screen))) {
            const auto inside = QPointF(QCursor::pos(picture.screen) - geometry.topLeft()) * picture.image.width() /
                                std::max(1, geometry.width());
            return {picture.area.x + qRound(inside.x()), picture.area.y + qRound(inside.y())};
        }
    }
    return {pictures.front().area.x, pictures.front().area.y};
}

} // namespace

AreaOverlay::AreaOverlay(std::vector<ScreenPicture> pictures, core::AppLanguage language,
                         std::chrono::milliseconds idleTimeout, Outcome outcome)
    : pictures_(std::move(pictures)),
      language_(language),
      outcome_(std::move(outcome)),
      selection_(areasOf(pictures_)) {
    selection_.pointTo(pointerOn(pictures_));
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        windows_.push_back(std::make_unique<AreaOverlayWindow>(*this, i));
        windows_.back()->show();
        windows_.back()->raise();
    }
    connect(&grabTimer_, &QTimer::timeout, this, &AreaOverlay::tryToGrab);
    grabTimer_.start(betweenGrabs);
    connect(&idleTimer_, &QTimer::timeout, this, &AreaOverlay::cancel);
    idleTimer_.start(idleTimeout);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &AreaOverlay::cancel);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &AreaOverlay::cancel);
}

AreaOverlay::~AreaOverlay() = default;

void AreaOverlay::tryToGrab() {
    if (windows_.front()->grabInput()) {
        grabTimer_.stop();
        ready_ = true;
        windows_.front()->announce();
    } else if (++grabAttempts_ == lastGrab) {
        end(outcome_.keptOut);
    }
}

void AreaOverlay::cancel() {
    end(outcome_.cancelled);
}

void AreaOverlay::mousePress(Qt::MouseButton button, core::PixelPoint point) {
    idleTimer_.start();
    if (button == Qt::LeftButton) {
        change([&] { selection_.press(point); });
    }
}

void AreaOverlay::mouseMove(core::PixelPoint point) {
    idleTimer_.start();
    change([&] { selection_.pointTo(point); });
}

void AreaOverlay::mouseRelease(Qt::MouseButton button, core::PixelPoint point) {
    if (button == Qt::RightButton) { // only now, so that the release does not reach the window below
        cancel();
    } else if (button == Qt::LeftButton && selection_.isPressed()) {
        selection_.pointTo(point);
        selection_.release() ? take() : cancel();
    }
}

void AreaOverlay::keyPress(const QKeyEvent& event) {
    idleTimer_.start();
    switch (event.key()) {
    case Qt::Key_Escape:
        cancel();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (selection_.area() && !selection_.isPressed()) {
            take();
        }
        break;
    case Qt::Key_Space:
        selection_.setMoving(selection_.isPressed());
        break;
    case Qt::Key_Shift:
        selection_.setLocked(selection_.isPressed());
        break;
    case Qt::Key_Left:
        arrow(-1, 0, event.modifiers());
        break;
    case Qt::Key_Right:
        arrow(1, 0, event.modifiers());
        break;
    case Qt::Key_Up:
        arrow(0, -1, event.modifiers());
        break;
    case Qt::Key_Down:
        arrow(0, 1, event.modifiers());
        break;
    default:
        break;
    }
}

void AreaOverlay::keyRelease(const QKeyEvent& event) {
    if (event.isAutoRepeat()) {
        return;
    }
    if (event.key() == Qt::Key_Space) {
        selection_.setMoving(false);
    } else if (event.key() == Qt::Key_Shift) {
        selection_.setLocked(false);
    }
}

void AreaOverlay::arrow(int dx, int dy, Qt::KeyboardModifiers modifiers) {
    const int step = modifiers.testFlag(Qt::ControlModifier) ? 1 : arrowStep;
    change([&] {
        modifiers.testFlag(Qt::ShiftModifier) ? selection_.resize(dx * step, dy * step)
                                              : selection_.move(dx * step, dy * step);
    });
    windows_.front()->announce();
}

void AreaOverlay::take() {
    const auto picture = cutOut(pictures_, *selection_.area());
    end([this, &picture] { outcome_.taken(picture); });
}

void AreaOverlay::change(const std::function<void()>& step) {
    std::vector<QRegion> before;
    for (const auto& window : windows_) {
        before.push_back(window->drawn());
    }
    step();
    for (std::size_t i = 0; i < windows_.size(); ++i) {
        windows_[i]->redraw(before[i] + windows_[i]->drawn());
    }
}

void AreaOverlay::end(const std::function<void()>& outcome) {
    if (std::exchange(ended_, true)) {
        return;
    }
    grabTimer_.stop();
    idleTimer_.stop();
    ready_ = false;
    windows_.front()->releaseInput();
    for (const auto& window : windows_) {
        window->hide();
    }
    outcome();
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/AreaSelection.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace quillane::core {

namespace {

PixelRect united(const std::vector<PixelRect>& screens) {
    auto all = screens.front();
    for (const auto& screen : screens) {
        const int right = std::max(all.right(), screen.right());
        const int bottom = std::max(all.bottom(), screen.bottom());
        all.x = std::min(all.x, screen.x);
        all.y = std::min(all.y, screen.y);
        all.width = right - all.x;
        all.height = bottom - all.y;
    }
    return all;
}

/// How far a number is from a range that ends before `end`.
int distance(int value, int begin, int end) {
    return std::max({begin - value, value - (end - 1), 0});
}

/// The number within the bounds; the lower one where they cross.
int within(int value, int lowest, int highest) {
    return std::max(lowest, std::min(value, highest));
}

} // namespace

PixelRect intersection(const PixelRect& one, const PixelRect& other) {
    const int x = std::max(one.x, other.x);
    const int y = std::max(one.y, other.y);
    return {x, y, std::max(0, std::min(one.right(), other.right()) - x),
            std::max(0, std::min(one.bottom(), other.bottom()) - y)};
}

AreaSelection::AreaSelection(std::vector<PixelRect> screens)
    : screens_(std::move(screens)), bounds_(united(screens_)) {}

PixelPoint AreaSelection::clamped(PixelPoint point) const {
    return {within(point.x, bounds_.x, bounds_.right() - 1), within(point.y, bounds_.y, bounds_.bottom() - 1)};
}

std::optional<PixelRect> AreaSelection::area() const {
    if (!selects_) {
        return std::nullopt;
    }
    const auto [left, right] = std::minmax(anchor_.x, corner_.x);
    const auto [top, bottom] = std::minmax(anchor_.y, corner_.y);
    return PixelRect{left, top, right - left + 1, bottom - top + 1};
}

void AreaSelection::press(PixelPoint point) {
    pointer_ = anchor_ = corner_ = lockedAt_ = clamped(point);
    pressed_ = true;
    selects_ = false;
}

void AreaSelection::pointTo(PixelPoint point) {
    const auto before = std::exchange(pointer_, clamped(point));
    if (!pressed_) {
        corner_ = selects_ ? corner_ : pointer_;
        return;
    }
    if (selects_ && moving_) {
        shift(pointer_.x - before.x, pointer_.y - before.y);
        lockedAt_ = corner_;
        return;
    }
    corner_ = pointer_;
    if (locked_) {
        const bool isAlongX = std::abs(pointer_.x - lockedAt_.x) >= std::abs(pointer_.y - lockedAt_.y);
        (isAlongX ? corner_.y : corner_.x) = isAlongX ? lockedAt_.y : lockedAt_.x;
    }
    selects_ = selects_ || std::max(std::abs(corner_.x - anchor_.x), std::abs(corner_.y - anchor_.y)) >= dragDistance;
}

bool AreaSelection::release() {
    pressed_ = moving_ = locked_ = false;
    return selects_;
}

void AreaSelection::setLocked(bool locked) {
    if (locked && !locked_) {
        lockedAt_ = corner_;
    }
    locked_ = locked;
}

void AreaSelection::shift(int dx, int dy) {
    const auto now = *area();
    const int stepX = within(dx, bounds_.x - now.x, bounds_.right() - now.right());
    const int stepY = within(dy, bounds_.y - now.y, bounds_.bottom() - now.bottom());
    anchor_ = {anchor_.x + stepX, anchor_.y + stepY};
    corner_ = {corner_.x + stepX, corner_.y + stepY};
}

bool AreaSelection::startInTheMiddle() {
    if (selects_ || pressed_) {
        return false;
    }
    const auto& screen = screens_[screenAt(screens_, pointer_)];
    anchor_ = {screen.x + screen.width / 4, screen.y + screen.height / 4};
    corner_ = {anchor_.x + std::max(1, screen.width / 2) - 1, anchor_.y + std::max(1, screen.height / 2) - 1};
    selects_ = true;
    return true;
}

void AreaSelection::move(int dx, int dy) {
    if (!startInTheMiddle() && selects_) {
        shift(dx, dy);
    }
}

void AreaSelection::resize(int dx, int dy) {
    if (startInTheMiddle() || !selects_) {
        return;
    }
    const auto now = *area();
    anchor_ = {now.x, now.y};
    corner_ = clamped({std::max(now.x, now.right() - 1 + dx), std::max(now.y, now.bottom() - 1 + dy)});
}

std::size_t screenAt(const std::vector<PixelRect>& screens, PixelPoint point) {
    const auto nearest = std::ranges::min_element(screens, {}, [&](const PixelRect& screen) {
        return std::hypot(distance(point.x, screen.x, screen.right()), distance(point.y, screen.y, screen.bottom()));
    });
    return static_cast<std::size_t>(nearest - screens.begin());
}

PixelRect sizeLabelPlace(const PixelRect& area, PixelPoint corner, PixelSize label, const PixelRect& screen, int gap) {
    const bool isRight = corner.x - area.x >= area.width / 2;
    const bool isLower = corner.y - area.y >= area.height / 2;
    const int x = isRight ? area.right() - label.width : area.x;
    const int below = isLower ? area.bottom() + gap : area.y + gap;
    const int above = isLower ? area.bottom() - gap - label.height : area.y - gap - label.height;
    const bool fitsBelow = below + label.height <= screen.bottom();
    const bool fitsAbove = above >= screen.y;
    const int y = isLower ? (fitsBelow ? below : above) : (fitsAbove ? above : below);
    return {within(x, screen.x, screen.right() - label.width), within(y, screen.y, screen.bottom() - label.height),
            label.width, label.height};
}

} // namespace quillane::core

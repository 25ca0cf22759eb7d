// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/ClipboardPanelPlacement.hpp"

#include <algorithm>

namespace quillane::core::clipboardPanelPlacement {

namespace {

constexpr double leftOfPointer = 36;
constexpr double belowPointer = 12;

} // namespace

Rect frame(const std::optional<Point>& pointer, const Rect& visibleScreen, Size size) {
    const auto area = visibleScreen.insetBy(margin);
    Rect frame{0, 0, std::min(size.width, area.width), std::min(size.height, area.height)};
    if (pointer) {
        frame.x = pointer->x - leftOfPointer;
        frame.y = pointer->y - belowPointer - frame.height;
    } else {
        frame.x = area.midX() - frame.width / 2;
        frame.y = area.minY() + (area.height - frame.height) / 2;
    }
    // A frame as wide as the area may end beyond it by a rounding error.
    frame.x = std::clamp(frame.x, area.minX(), std::max(area.minX(), area.maxX() - frame.width));
    frame.y = std::clamp(frame.y, area.minY(), std::max(area.minY(), area.maxY() - frame.height));
    return frame;
}

} // namespace quillane::core::clipboardPanelPlacement

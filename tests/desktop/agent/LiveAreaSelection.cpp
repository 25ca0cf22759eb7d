// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/LiveAreaSelection.hpp"

#include <algorithm>

namespace quillane::live {

bool LiveAreaSelection::isCovered() const {
    const auto& session = desktop_.screen();
    const auto screen = areaOf(session, session.root());
    return screen && std::ranges::any_of(popUps(session), [&](xcb_window_t window) {
               const auto area = areaOf(session, window);
               return area && area->width == screen->width && area->height == screen->height;
           });
}

bool LiveAreaSelection::hasKeyboard() const {
    const bool free = grabKeyboard(desktop_.screen());
    if (free) {
        ungrabKeyboard(desktop_.screen());
    }
    return !free;
}

bool LiveAreaSelection::waitUntilOpen() const {
    return waitUntil([&] { return isCovered() && hasKeyboard(); });
}

bool LiveAreaSelection::waitUntilClosed() const {
    return waitUntil([&] { return !isCovered() && !hasKeyboard(); });
}

void LiveAreaSelection::beginDrag(const ScreenArea& area) const {
    const auto& mouse = desktop_.keyboard();
    mouse.movePointer(area.x, area.y);
    mouse.pressButton(1);
    mouse.movePointer(area.centerX(), area.centerY());
    mouse.movePointer(area.x + area.width - 1, area.y + area.height - 1);
}

void LiveAreaSelection::drag(const ScreenArea& area) const {
    beginDrag(area);
    release();
}

} // namespace quillane::live

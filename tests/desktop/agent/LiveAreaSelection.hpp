// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"
#include "desktop/fixture/XClients.hpp"

namespace quillane::live {

/// The agent's selection over the screen, used with the mouse, and seen as any other program sees it.
class LiveAreaSelection {
public:
    explicit LiveAreaSelection(const LiveDesktop& desktop) : desktop_(desktop) {}

    /// A window covers the whole screen.
    [[nodiscard]] bool isCovered() const;

    /// Some program has the keyboard to itself.
    [[nodiscard]] bool hasKeyboard() const;

    /// Waits until the user can select.
    [[nodiscard]] bool waitUntilOpen() const;

    /// Waits until nothing covers the screen and the keyboard is free.
    [[nodiscard]] bool waitUntilClosed() const;

    /// Drags over the area from its upper left corner to its lower right one, and keeps the button down.
    void beginDrag(const ScreenArea& area) const;

    void release() const { desktop_.keyboard().releaseButton(1); }

    /// Selects the area.
    void drag(const ScreenArea& area) const;

private:
    const LiveDesktop& desktop_;
};

} // namespace quillane::live

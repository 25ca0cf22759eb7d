// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"
#include "desktop/fixture/XClients.hpp"

namespace quillane::live {

/// The agent's selection over the screen, used with the mouse and observed as another program would.
class LiveAreaSelection {
public:
    explicit LiveAreaSelection(const LiveDesktop& desktop) : desktop_(desktop) {}

    /// A window covers the whole screen.
    [[nodiscard]] bool isCovered() const;

    /// A program has grabbed the keyboard.
    [[nodiscard]] bool hasKeyboard() const;

    /// Waits until the user can select.
    [[nodiscard]] bool waitUntilOpen() const;

    /// Waits until nothing covers the screen and the keyboard is free.
    [[nodiscard]] bool waitUntilClosed() const;

    /// Drags over the area from the upper left to the lower right corner, and keeps the button down.
    void beginDrag(const ScreenArea& area) const;

    void release() const { desktop_.keyboard().releaseButton(1); }

    /// Selects the area.
    void drag(const ScreenArea& area) const;

private:
    const LiveDesktop& desktop_;
};

} // namespace quillane::live

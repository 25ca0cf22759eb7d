// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/XClients.hpp"

#include <array>
#include <cstdint>

namespace quillane::live {

/// A window without a frame that shows four colours, one in each quarter. It needs a window manager.
class ColoredWindow {
public:
    /// RGB: upper left, upper right, lower left, lower right.
    static constexpr std::array<std::uint32_t, 4> colors{0xd02030, 0x20a040, 0x2040c0, 0xf0c020};

    ColoredWindow(const XSession& session, const ScreenArea& area);
    ~ColoredWindow();
    ColoredWindow(const ColoredWindow&) = delete;
    ColoredWindow& operator=(const ColoredWindow&) = delete;

    /// The window manager has put it in the requested position.
    [[nodiscard]] bool isShown() const;

    /// The colour at a position on the screen within the window.
    [[nodiscard]] std::uint32_t colorAt(int x, int y) const;

private:
    const XSession& session_;
    ScreenArea area_;
    xcb_window_t window_;
};

} // namespace quillane::live

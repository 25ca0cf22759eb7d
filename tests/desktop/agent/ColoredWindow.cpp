// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/ColoredWindow.hpp"

#include <algorithm>

namespace quillane::live {

namespace {

xcb_window_t makeWindow(const XSession& session, xcb_window_t parent, const ScreenArea& area, std::uint32_t color) {
    const auto window = xcb_generate_id(session.connection());
    xcb_create_window(session.connection(), XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL, &color);
    return window;
}

/// Asks the window manager for no frame, and for this position as if by the user.
void askForPlace(const XSession& session, xcb_window_t window) {
    constexpr std::array<std::uint32_t, 5> noDecorations{2};
    const auto motif = session.atom("_MOTIF_WM_HINTS");
    xcb_change_property(session.connection(), XCB_PROP_MODE_REPLACE, window, motif, motif, 32, noDecorations.size(),
                        noDecorations.data());
    constexpr std::array<std::uint32_t, 18> placedByUser{1};
    xcb_change_property(session.connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, placedByUser.size(), placedByUser.data());
}

} // namespace

ColoredWindow::ColoredWindow(const XSession& session, const ScreenArea& area)
    : session_(session), area_(area), window_(makeWindow(session, session.root(), area, 0)) {
    askForPlace(session, window_);
    const int width = area.width / 2;
    const int height = area.height / 2;
    for (int i = 0; i < 4; ++i) {
        makeWindow(session, window_, {i % 2 * width, i / 2 * height, width, height},
                   colors.at(static_cast<std::size_t>(i)));
    }
    xcb_map_subwindows(session.connection(), window_);
    xcb_map_window(session.connection(), window_);
    session.sync();
}

bool ColoredWindow::isShown() const {
    const auto managed = session_.managedWindows();
    const auto area = areaOf(session_, window_);
    return std::ranges::find(managed, window_) != managed.end() && area && area->x == area_.x && area->y == area_.y;
}

ColoredWindow::~ColoredWindow() {
    xcb_destroy_window(session_.connection(), window_);
    session_.sync();
}

std::uint32_t ColoredWindow::colorAt(int x, int y) const {
    const int column = x - area_.x < area_.width / 2 ? 0 : 1;
    const int row = y - area_.y < area_.height / 2 ? 0 : 1;
    return colors.at(static_cast<std::size_t>(row * 2 + column));
}

} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11GrabWatch.hpp"

#include <cstdlib>

namespace quillane {

namespace {

constexpr int maximumAtOnce = 256; ///< events, so that a flood of them does not keep the caller from its clock

} // namespace

X11GrabWatch::X11GrabWatch(const char* display) {
    int screen = 0;
    connection_ = xcb_connect(display, &screen);
    if (isLost()) {
        return;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screens.rem > 1 && screen > 0; --screen) {
        xcb_screen_next(&screens);
    }
    root_ = screens.data->root;
}

X11GrabWatch::~X11GrabWatch() {
    xcb_disconnect(connection_);
}

void X11GrabWatch::listen(bool listens) {
    since_.reset();
    const std::uint32_t mask = listens ? XCB_EVENT_MASK_FOCUS_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_);
}

void X11GrabWatch::read() {
    for (int i = 0; i < maximumAtOnce; ++i) {
        auto* event = xcb_poll_for_event(connection_);
        if (event == nullptr) {
            return;
        }
        // Events that another client has sent carry one more bit.
        if (event->response_type == XCB_FOCUS_IN || event->response_type == XCB_FOCUS_OUT) {
            const auto mode = reinterpret_cast<const xcb_focus_in_event_t*>(event)->mode;
            if (mode == XCB_NOTIFY_MODE_GRAB) {
                since_ = Clock::now();
            } else if (mode == XCB_NOTIFY_MODE_UNGRAB) {
                since_.reset();
            }
        }
        std::free(event);
    }
}

} // namespace quillane

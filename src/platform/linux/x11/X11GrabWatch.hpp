// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace quillane {

/// Notices when a grab on the root window takes the keyboard: the server announces it by the focus that the root window
/// gets meanwhile (X protocol, FocusIn with mode Grab). It has a connection of its own and no Qt, so that a thread or a
/// small program can watch what another thread or program holds. Nothing arrives while nobody grabs.
class X11GrabWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// Connects, and waits for the server meanwhile.
    explicit X11GrabWatch(const char* display);
    ~X11GrabWatch();
    X11GrabWatch(const X11GrabWatch&) = delete;
    X11GrabWatch& operator=(const X11GrabWatch&) = delete;

    /// The server could not be reached, or has closed the connection.
    [[nodiscard]] bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    [[nodiscard]] xcb_connection_t* raw() const { return connection_; }

    /// Readable when `read` has something to do.
    [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_); }

    /// Begins to notice grabs, or stops. There is none then, as far as is known.
    void listen(bool listens);

    /// Reads what has arrived.
    void read();

    /// When the keyboard was taken, while it is.
    [[nodiscard]] std::optional<Clock::time_point> grabbedSince() const { return since_; }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::optional<Clock::time_point> since_;
};

} // namespace quillane

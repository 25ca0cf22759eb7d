// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace quillane {

/// What the environment says about the window system.
struct LinuxDesktop {
    std::string x11Display;      ///< $DISPLAY, empty without an X server
    bool waylandSession = false; ///< a Wayland compositor runs the session, perhaps with an X server for X11 programs

    /// Read from $DISPLAY, $WAYLAND_DISPLAY and $XDG_SESSION_TYPE.
    [[nodiscard]] static LinuxDesktop fromEnvironment();
};

/// One sentence for the user when no program can observe the keyboard. An X server under Wayland sees only the keys of
/// X11 programs, so even then there are no shortcuts.
[[nodiscard]] std::optional<std::string> keyboardUnavailableReason(const LinuxDesktop& desktop);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Geometry.hpp"

#include <functional>
#include <vector>

#include <sys/types.h>

namespace quillane {

/// A visible window of any program.
struct OnScreenWindow {
    pid_t pid = 0;
    int layer = 0;           ///< 0 for ordinary windows, above 0 for windows that float over them, below 0 for the
                             ///< desktop
    core::ScreenRect bounds; ///< with its title bar, in points

    bool operator==(const OnScreenWindow&) const = default;
};

/// The windows on the screen. Main thread.
class WindowList {
public:
    using Handler = std::function<void(const std::vector<OnScreenWindow>& windows)>;

    virtual ~WindowList() = default;

    /// Calls the handler once, on the main thread, with the windows from front to back: inside the call where the
    /// desktop answers at once, otherwise as soon as it has answered, unless this object has been destroyed. Never
    /// blocks.
    virtual void read(Handler handler) = 0;
};

} // namespace quillane

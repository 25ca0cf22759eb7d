// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowList.hpp"

#include <memory>

#include <xcb/xcb.h>

namespace quillane {

class X11Connection;

/// The windows that the window manager keeps (_NET_CLIENT_LIST_STACKING, EWMH 1.5) and that are on the current desktop.
/// Without a window manager there are none.
class X11WindowList final : public WindowList {
public:
    explicit X11WindowList(X11Connection& connection);

    void read(Handler handler) override;

private:
    struct Reading;

    struct Atoms {
        xcb_atom_t stacking, pid, frameExtents, type, dock, desktop, state, above;
    };

    void readWindows(const std::shared_ptr<Reading>& reading);

    X11Connection& connection_;
    Atoms atoms_{};
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with answers that are on their way
};

} // namespace quillane

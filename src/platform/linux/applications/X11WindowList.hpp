// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/WindowList.hpp"

#include <memory>

#include <xcb/xcb.h>

namespace quillane {

class X11Connection;

/// The window manager's windows (_NET_CLIENT_LIST_STACKING, EWMH 1.5) on the current desktop. None without a window
/// manager.
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
    core::Lifetime lifetime_;
};

} // namespace quillane

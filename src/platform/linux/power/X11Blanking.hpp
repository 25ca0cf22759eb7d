// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <memory>

namespace quillane {

/// The X server's own blanking and power saving of the display (MIT-SCREEN-SAVER extension, ScreenSaverSuspend of
/// version 1.1). The server resumes it by itself when the connection ends. Main thread.
class X11Blanking {
public:
    /// Asks for the server's capabilities; the answer is pending afterwards.
    explicit X11Blanking(X11Connection& connection);

    /// Suspends blanking until `resume`. False when the server cannot. May wait for the first answer, at most a fifth
    /// of a second.
    [[nodiscard]] bool suspend();

    void resume();

private:
    void ask();
    void send(bool suspended);

    X11Connection& connection_;
    bool answered_ = false;
    bool supported_ = false;
    bool suspended_ = false;
    core::Lifetime lifetime_;
    core::Subscription openings_;
};

} // namespace quillane

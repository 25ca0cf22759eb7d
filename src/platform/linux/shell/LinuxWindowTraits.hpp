// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowTraits.hpp"

namespace quillane {

/// On Linux a program without windows appears nowhere, and a window appears in the task bar by itself, so both policies
/// need no call. Windows come to the front one by one (QWidget::activateWindow).
class LinuxWindowTraits final : public WindowTraits {
public:
    [[nodiscard]] KeyNumbering keyNumbering() const override { return KeyNumbering::x11; }

    void setActivationPolicy(ActivationPolicy) override {}

    void activateApplication() override {}

    /// A panel with keyboard input is a popup, like a menu: the window manager does not manage it, it takes the
    /// keyboard by a grab instead of the focus, and a click elsewhere closes it. A card is a utility window
    /// (_NET_WM_WINDOW_TYPE of the Extended Window Manager Hints 1.5) above the others that does not accept the focus.
    /// A sign is a tool tip, which the window manager does not manage, with an empty input shape.
    void makePanel(QWidget& window, PanelKind kind) override;
};

} // namespace quillane

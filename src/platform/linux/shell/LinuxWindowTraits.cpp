// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/LinuxWindowTraits.hpp"

#include <QWidget>

namespace quillane {

void LinuxWindowTraits::makePanel(QWidget& window, PanelKind kind) {
    if (kind == PanelKind::search) {
        window.setWindowFlags(Qt::Popup | Qt::FramelessWindowHint);
        return;
    }
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    if (kind == PanelKind::sign) {
        // Qt adds the second and third to those of a tool tip by itself, and then makes the server's window once more
        // without the input shape.
        window.setWindowFlags(Qt::ToolTip | Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint |
                              Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput);
        return;
    }
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    window.setAttribute(Qt::WA_X11NetWmWindowTypeUtility);
}

} // namespace quillane

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
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.setAttribute(Qt::WA_X11NetWmWindowTypeUtility);
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace quillane {

/// The colour in which icons are visible on the X11 system tray: the tray's _NET_SYSTEM_TRAY_COLORS property (System
/// Tray Protocol 0.4), and without one the text colour of windows.
[[nodiscard]] QColor trayForegroundColor();

} // namespace quillane

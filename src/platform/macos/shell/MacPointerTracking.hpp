// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace quillane {

/// Lets a panel hear the pointer while another application is in front, which it always is: Qt's own tracking area
/// (NSTrackingActiveInActiveApp) is silent then, and without it there would be no hovering, no tool tips and no
/// previews. Call it once the widget has its window.
void trackPointerAlways(QWidget& window);

} // namespace quillane

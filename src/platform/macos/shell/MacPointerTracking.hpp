// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace quillane {

/// Lets a panel track the pointer while another application is in front, as it always is. Qt's own tracking area
/// (NSTrackingActiveInActiveApp) is inactive then, so there would be no hovering, no tool tips and no previews. Call it
/// once the widget has its window.
void trackPointerAlways(QWidget& window);

} // namespace quillane

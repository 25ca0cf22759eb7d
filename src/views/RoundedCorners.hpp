// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace quillane {

/// Cuts the corners off a window that the desktop does not round itself. Call it again whenever the size changes. The
/// radius is in points.
void roundCorners(QWidget& window, double radius);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>
#include <string>

/// The position of a window on the desktop, including its title bar, and the size of its content.
namespace quillane::windowFrame {

/// "x y width height", as stored in the settings.
[[nodiscard]] std::string stored(const QRect& frame);

/// What `stored` made; none for any other text and for a frame without a size.
[[nodiscard]] std::optional<QRect> parse(const std::string& stored);

/// Whether enough of the title bar is within the area to drag it.
[[nodiscard]] bool isReachable(const QRect& frame, const QRect& area);

/// The frame moved, and shrunk if necessary, to lie within the area.
[[nodiscard]] QRect fitted(const QRect& frame, const QRect& area);

} // namespace quillane::windowFrame

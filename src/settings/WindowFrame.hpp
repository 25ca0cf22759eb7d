// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>
#include <string>

/// The place of a window on the desktop, with its title bar, and the size of what is inside it.
namespace quillane::windowFrame {

/// "x y width height", as it is kept in the settings.
[[nodiscard]] std::string stored(const QRect& frame);

/// What `stored` made; none for any other text and for a frame without a size.
[[nodiscard]] std::optional<QRect> parse(const std::string& stored);

/// Whether enough of the title bar lies within the area to take hold of it.
[[nodiscard]] bool isReachable(const QRect& frame, const QRect& area);

/// Moved, and where it is larger made smaller, to lie within the area.
[[nodiscard]] QRect fitted(const QRect& frame, const QRect& area);

} // namespace quillane::windowFrame

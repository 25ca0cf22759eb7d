// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Geometry.hpp"

#include <optional>

/// Where the card goes that shows the user what to do in the system's settings.
namespace quillane::core::permissionGuidePlacement {

/// Between the card and the window, and the card and the edge of the screen, in points.
inline constexpr double margin = 12;

/// Below the window; where there is no room, to its right, then to its left, then inside it at the bottom right.
/// Without a window, at the bottom of the screen in the middle. The result lies within the visible part of the screen
/// inset by the margin, and shrinks to fit it.
[[nodiscard]] Rect frame(const std::optional<Rect>& window, const Rect& visibleScreen, Size size);

} // namespace quillane::core::permissionGuidePlacement

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Geometry.hpp"

#include <optional>

/// Where the panel of the clipboard history opens.
namespace quillane::core::clipboardPanelPlacement {

/// The minimum distance to the edges of the visible screen, in points.
inline constexpr double margin = 8;

/// Below the pointer and a little to its left, or without one in the middle of the screen; then moved, and shrunk if
/// necessary, to lie within the visible part of the screen inset by the margin.
[[nodiscard]] Rect frame(const std::optional<Point>& pointer, const Rect& visibleScreen, Size size);

} // namespace quillane::core::clipboardPanelPlacement

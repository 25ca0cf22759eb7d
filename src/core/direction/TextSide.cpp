// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/TextSide.hpp"

namespace quillane::core {

std::optional<WritingDirection> directionOfLine(const HorizontalSpan& field, const HorizontalSpan& line) {
    constexpr double smallestShare = 0.1; // of the field: borders, padding and a scroll bar are less
    const double onTheLeft = line.left - field.left;
    const double onTheRight = field.right - line.right;
    const double width = field.right - field.left;
    if (onTheLeft < 0 || onTheRight < 0) {
        return std::nullopt; // scrolled
    }
    if (onTheRight - onTheLeft > smallestShare * width) {
        return WritingDirection::leftToRight;
    }
    return onTheLeft - onTheRight > smallestShare * width ? std::optional(WritingDirection::rightToLeft) : std::nullopt;
}

} // namespace quillane::core

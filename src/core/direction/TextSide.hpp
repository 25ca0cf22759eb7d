// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"

#include <optional>

namespace quillane::core {

/// What is between two vertical edges, in any unit.
struct HorizontalSpan {
    double left = 0;
    double right = 0;
};

/// The base direction of a text, by the side of its field on which a line of it is; for an empty text, the text cursor.
/// None when the line fills its field or is in the middle of it.
[[nodiscard]] std::optional<WritingDirection> directionOfLine(const HorizontalSpan& field, const HorizontalSpan& line);

} // namespace quillane::core

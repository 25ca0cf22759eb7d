// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace quillane::core {

/// The base direction of a paragraph.
enum class WritingDirection { leftToRight, rightToLeft };

[[nodiscard]] constexpr std::string_view rawValue(WritingDirection direction) {
    return direction == WritingDirection::leftToRight ? "LTR" : "RTL";
}

/// The direction with exactly this raw value, or none.
[[nodiscard]] constexpr std::optional<WritingDirection> writingDirection(std::string_view raw) {
    for (const auto direction : {WritingDirection::leftToRight, WritingDirection::rightToLeft}) {
        if (rawValue(direction) == raw) {
            return direction;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core

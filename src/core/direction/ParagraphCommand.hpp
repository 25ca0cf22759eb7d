// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/SupportedApplication.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillane::core::paragraphCommand {

/// The index of the menu item to choose for a paragraph: the first with the requested title behind the heading
/// "Paragraph" (from the start when there is none) and before the heading "Selection" (to the end when there is none).
/// Titles are compared without white space around them and without direction marks; the requested title as it is.
[[nodiscard]] std::optional<std::size_t> index(std::span<const std::string> titles, std::string_view requested);

/// The same with the application's own labels, in any of its languages.
[[nodiscard]] std::optional<std::size_t> index(std::span<const std::string> titles, const DirectionLabels& labels,
                                               WritingDirection direction);

/// The "AXIdentifier" of a menu item of AppKit that sets the direction of a paragraph: the action that it sends, which
/// is the same in every language. Another action sets the direction of the selected text.
[[nodiscard]] constexpr std::string_view actionIdentifier(WritingDirection direction) {
    return direction == WritingDirection::rightToLeft ? "makeBaseWritingDirectionRightToLeft:"
                                                      : "makeBaseWritingDirectionLeftToRight:";
}

} // namespace quillane::core::paragraphCommand

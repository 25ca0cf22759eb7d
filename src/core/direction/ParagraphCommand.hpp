// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillane::core::paragraphCommand {

/// The index of the menu item to choose for a paragraph: the first with the requested title behind the heading
/// "Paragraph" (from the start when there is none) and before the heading "Selection" (to the end when there is none).
/// Titles are compared without white space around them; the requested title as it is.
[[nodiscard]] std::optional<std::size_t> index(std::span<const std::string> titles, std::string_view requested);

} // namespace quillane::core::paragraphCommand

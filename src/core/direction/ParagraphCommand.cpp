// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/ParagraphCommand.hpp"

#include "core/support/Text.hpp"

#include <algorithm>
#include <vector>

namespace quillane::core::paragraphCommand {

std::optional<std::size_t> index(std::span<const std::string> titles, std::string_view requested) {
    std::vector<std::string_view> trimmed;
    std::ranges::transform(titles, std::back_inserter(trimmed), trimmedOfWhiteSpace);
    const auto heading = std::ranges::find(trimmed, "Paragraph");
    const auto start = heading == trimmed.end() ? trimmed.begin() : std::next(heading);
    const auto end = std::ranges::find(trimmed, "Selection");
    if (start >= end) {
        return std::nullopt;
    }
    const auto found = std::find(start, end, requested);
    return found == end ? std::nullopt : std::optional(static_cast<std::size_t>(found - trimmed.begin()));
}

} // namespace quillane::core::paragraphCommand

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/ParagraphCommand.hpp"

#include <algorithm>

namespace quillane::core::paragraphCommand {

std::optional<std::size_t> index(std::span<const std::string> titles, std::string_view requested) {
    return index(titles, DirectionLabels{.rightToLeft = {.english = requested}}, WritingDirection::rightToLeft);
}

std::optional<std::size_t> index(std::span<const std::string> titles, const DirectionLabels& labels,
                                 WritingDirection direction) {
    const auto is = [](const Labels& label) {
        return [&label](std::string_view title) { return label.matches(title); };
    };
    const auto heading = std::ranges::find_if(titles, is(labels.paragraph));
    const auto start = heading == titles.end() ? titles.begin() : std::next(heading);
    const auto end = std::ranges::find_if(titles, is(labels.selection));
    if (start >= end) {
        return std::nullopt;
    }
    const auto found = std::find_if(start, end, is(labels.command(direction)));
    return found == end ? std::nullopt : std::optional(static_cast<std::size_t>(found - titles.begin()));
}

} // namespace quillane::core::paragraphCommand

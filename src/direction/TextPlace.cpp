// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/TextPlace.hpp"

#include "core/direction/TextSide.hpp"

namespace quillane {

namespace {

/// The place of the last line that holds a character. Its first character is searched by halves.
std::optional<AXRect> lastLine(Accessibility& accessibility, const AXElement& editor, std::int64_t count) {
    const auto last = accessibility.frameOfText(editor, {count - 1, 1});
    if (!last) {
        return std::nullopt;
    }
    std::int64_t begin = 0;
    std::int64_t end = count - 1;
    while (begin < end) {
        const auto middle = begin + (end - begin) / 2;
        const auto place = accessibility.frameOfText(editor, {middle, 1});
        if (!place) {
            return std::nullopt;
        }
        if (place->y + place->height / 2 < last->y) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return accessibility.frameOfText(editor, {begin, count - begin});
}

} // namespace

std::optional<core::WritingDirection> directionOfText(Accessibility& accessibility, const AXElement& editor) {
    const auto value = accessibility.attribute(editor, "AXNumberOfCharacters");
    const auto* count = value ? std::get_if<std::int64_t>(&*value) : nullptr;
    const auto field = count != nullptr ? accessibility.frame(editor) : std::nullopt;
    if (!field) {
        return std::nullopt;
    }
    const auto directionOf = [&](const std::optional<AXRect>& place) {
        return place ? core::directionOfLine({field->x, field->right()}, {place->x, place->right()}) : std::nullopt;
    };
    const auto direction = directionOf(accessibility.frameOfText(editor, {0, *count}));
    return direction || *count < 2 ? direction : directionOf(lastLine(accessibility, editor, *count));
}

} // namespace quillane

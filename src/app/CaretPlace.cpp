// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CaretPlace.hpp"

#include "direction/AX.hpp"

#include <algorithm>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto timeout = 150ms;
constexpr double lineHeight = 24; // of an empty field, whose only line may be at its top

/// A line of the field, which some applications report a few pixels outside of it.
bool isInside(const AXRect& place, const AXRect& field) {
    const double x = place.x + place.width / 2;
    const double y = place.y + place.height / 2;
    return place.height > 0 && x >= field.x - lineHeight && x <= field.right() + lineHeight &&
           y >= field.y - lineHeight && y <= field.y + field.height + lineHeight;
}

} // namespace

std::optional<AXRect> caretPlace(Accessibility& accessibility, pid_t pid) {
    const auto application = accessibility.application(pid);
    accessibility.setMessagingTimeout(application, timeout);
    const auto editor = ax::element(accessibility, application, "AXFocusedUIElement");
    const auto value = editor ? accessibility.attribute(*editor, "AXSelectedTextRange") : std::nullopt;
    const auto* selection = value ? std::get_if<AXTextRange>(&*value) : nullptr;
    const auto field = selection != nullptr ? accessibility.frame(*editor) : std::nullopt;
    if (!field) {
        return std::nullopt;
    }
    const auto end = selection->location + selection->length;
    const auto placeOf = [&](const AXTextRange& range) {
        const auto place = accessibility.frameOfText(*editor, range);
        return place && isInside(*place, *field) ? place : std::nullopt;
    };
    if (const auto caret = placeOf({end, 0})) {
        return caret;
    }
    if (end > 0) {
        return placeOf({end - 1, 1}); // behind the last character some applications have no place
    }
    return AXRect{field->x, field->y, field->width, std::min(field->height, lineHeight)};
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/SelectionSnapshot.hpp"

#include <utility>

namespace quillane {

namespace {

constexpr std::string_view range = "AXSelectedTextRange";
constexpr std::string_view markerRange = "AXSelectedTextMarkerRange"; // of web content

} // namespace

std::optional<SelectionSnapshot> SelectionSnapshot::of(Accessibility& accessibility, const AXElement& editor) {
    auto value = accessibility.attribute(editor, range);
    if (value && std::holds_alternative<AXTextRange>(*value)) {
        return SelectionSnapshot(range, std::move(*value));
    }
    value = accessibility.attribute(editor, markerRange);
    return value ? std::optional(SelectionSnapshot(markerRange, std::move(*value))) : std::nullopt;
}

bool SelectionSnapshot::isPreserved(Accessibility& accessibility, const AXElement& editor) const {
    if (accessibility.attribute(editor, attribute_) == value_) {
        return true;
    }
    return accessibility.setAttribute(editor, attribute_, value_) &&
           accessibility.attribute(editor, attribute_) == value_;
}

} // namespace quillane

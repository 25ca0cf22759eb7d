// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// The selection of an editor at one moment: a range of text, or the editor's own value for a position.
class SelectionSnapshot {
public:
    /// None when the editor exposes no selection.
    [[nodiscard]] static std::optional<SelectionSnapshot> of(Accessibility& accessibility, const AXElement& editor);

    /// Whether the editor's selection still equals this one; if not, writes it back and checks again.
    [[nodiscard]] bool isPreserved(Accessibility& accessibility, const AXElement& editor) const;

private:
    SelectionSnapshot(std::string_view attribute, AXValue value) : attribute_(attribute), value_(std::move(value)) {}

    std::string_view attribute_;
    AXValue value_;
};

} // namespace quillane

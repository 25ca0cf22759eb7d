// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "platform/Accessibility.hpp"

#include <optional>

namespace quillane {

/// The base direction of an editor's text, by where it is in its field. None when that does not show it: the text fills
/// its lines or is centred, or the editor does not say where its text is.
[[nodiscard]] std::optional<core::WritingDirection> directionOfText(Accessibility& accessibility,
                                                                    const AXElement& editor);

} // namespace quillane

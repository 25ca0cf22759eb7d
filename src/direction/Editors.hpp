// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "platform/Accessibility.hpp"

namespace quillane {

/// Whether the focused element is an editor of the application, by the rule of its row.
[[nodiscard]] bool isDirectionEditor(Accessibility& accessibility, const AXElement& focused,
                                     const core::SupportedApplication& application);

/// Whether text can be edited in the element, password fields excepted.
[[nodiscard]] bool isEditableInput(Accessibility& accessibility, const AXElement& focused);

/// Whether the focused element is the subject line of a message in the application.
[[nodiscard]] bool isSubjectLine(Accessibility& accessibility, const AXElement& focused,
                                 const core::SupportedApplication& application);

} // namespace quillane

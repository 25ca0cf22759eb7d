// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "platform/Accessibility.hpp"

namespace quillane {

/// Whether a focused element is a place in which the application turns paragraphs by its context menu.
[[nodiscard]] bool isDirectionEditor(Accessibility& accessibility, const AXElement& focused,
                                     core::SupportedApplication application);

/// The subject line of a message in Mail.
[[nodiscard]] bool isMailSubject(Accessibility& accessibility, const AXElement& focused);

/// The subject line of a message in Outlook.
[[nodiscard]] bool isOutlookSubject(Accessibility& accessibility, const AXElement& focused);

} // namespace quillane

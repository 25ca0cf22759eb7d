// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "platform/Accessibility.hpp"

namespace quillane {

/// Whether the application can set paragraph direction in the focused element through its context menu.
[[nodiscard]] bool isDirectionEditor(Accessibility& accessibility, const AXElement& focused,
                                     core::SupportedApplication application);

/// The subject line of a message in Mail.
[[nodiscard]] bool isMailSubject(Accessibility& accessibility, const AXElement& focused);

/// The subject line of a message in Outlook.
[[nodiscard]] bool isOutlookSubject(Accessibility& accessibility, const AXElement& focused);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemSymbols.hpp"

#import <AppKit/AppKit.h>

#include <string_view>

namespace quillane {

/// The system symbol of that name, sized for a menu row and marked as a template; nil when the system has no such
/// symbol (+[NSImage imageWithSystemSymbolName:accessibilityDescription:]).
[[nodiscard]] NSImage* menuIcon(std::string_view name);

/// The icon of this application in the size of a menu row, 16 × 16 points (NSApplication.applicationIconImage).
[[nodiscard]] NSImage* menuApplicationIcon();

/// The system's symbols as values.
class MacSystemSymbols final : public SystemSymbols {
public:
    [[nodiscard]] std::optional<TemplateImage> image(std::string_view name, int pixels) const override;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#import <AppKit/AppKit.h>

#include <vector>

namespace quillane {

/// A new menu item that shows the row and runs its action. It owns everything that it needs.
[[nodiscard]] NSMenuItem* menuItem(const MenuRow& row);

/// Makes the menu show exactly these rows. Items are changed in place where possible, so that an open menu stays open
/// and keeps its highlight.
void showRows(NSMenu* menu, const std::vector<MenuRow>& rows);

[[nodiscard]] NSUserInterfaceLayoutDirection layoutDirection(LayoutDirection direction);

} // namespace quillane

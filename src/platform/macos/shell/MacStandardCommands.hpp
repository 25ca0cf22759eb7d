// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationMenu.hpp"

#import <AppKit/AppKit.h>

namespace quillane {

/// A menu item with the row's title that sends the command's usual action (`copy:`, `performClose:`) to whatever has
/// the focus, under the command's usual key.
[[nodiscard]] NSMenuItem* standardMenuItem(StandardCommand command, const MenuRow& row);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <Carbon/Carbon.h>

namespace quillane {

/// What UCKeyTranslate (CoreServices, Unicode Utilities) gives for each stroke on the keyboard that was used last.
[[nodiscard]] core::KeyboardLayout readMacLayout(const UCKeyboardLayout& layout);

} // namespace quillane

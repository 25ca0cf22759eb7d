// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillane {

/// The bundle identifier that stands for a window class (the second string of WM_CLASS, ICCCM 4.1.2.5), in any
/// spelling of its letters. A class that the table does not know is its own identifier, so that two applications
/// always differ.
[[nodiscard]] std::string bundleIdentifierOfWindowClass(std::string_view windowClass);

} // namespace quillane

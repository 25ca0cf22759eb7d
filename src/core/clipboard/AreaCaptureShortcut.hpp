// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <string_view>

/// The shortcut by which macOS lets the user select an area and copies its picture: Control + Shift + Command + 4.
namespace quillane::core::areaCaptureShortcut {

inline constexpr KeyCode keyCode = 21;
inline constexpr EventFlags eventFlags = flags::control | flags::shift | flags::command;

/// The page of System Settings where it can be turned off.
inline constexpr std::string_view settingsAddress = "x-apple.systempreferences:com.apple.Keyboard-Settings.extension";

} // namespace quillane::core::areaCaptureShortcut

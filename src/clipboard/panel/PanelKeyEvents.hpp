// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"
#include "platform/WindowTraits.hpp"

#include <optional>

class QKeyEvent;

/// The window's key presses in the terms of the rules.
namespace quillane::panelKeyEvents {

/// The key code of the key, if it can mean anything to the panel. Digits are recognised in every script, and by
/// position on layouts that have other signs there.
[[nodiscard]] std::optional<core::KeyCode> keyCode(const QKeyEvent& event, KeyNumbering numbering);

/// Command is the modifier of menu shortcuts.
[[nodiscard]] core::EventFlags flags(const QKeyEvent& event);

/// The keys that opened the panel, where the window receives them: Command (Super on X11), Shift and the key of V.
[[nodiscard]] bool isHotKey(const QKeyEvent& event, KeyNumbering numbering);

} // namespace quillane::panelKeyEvents

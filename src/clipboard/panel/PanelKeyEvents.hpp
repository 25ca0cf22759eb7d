// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"
#include "platform/WindowTraits.hpp"

#include <optional>

class QKeyEvent;

/// Key presses of the window as the rules name them.
namespace quillane::panelKeyEvents {

/// The place of the key, if it may mean anything to the panel. Digits are known in every script, and by their place on
/// layouts that have other signs there.
[[nodiscard]] std::optional<core::KeyCode> keyCode(const QKeyEvent& event, KeyNumbering numbering);

/// Command is the modifier of menu shortcuts.
[[nodiscard]] core::EventFlags flags(const QKeyEvent& event);

/// The keys that opened the panel, where the window has them to itself: Command (Super on X11), Shift and the key of V.
[[nodiscard]] bool isHotKey(const QKeyEvent& event, KeyNumbering numbering);

} // namespace quillane::panelKeyEvents

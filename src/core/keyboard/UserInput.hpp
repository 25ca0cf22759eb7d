// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

namespace quillane::core {

/// What a key press, a click or scrolling may mean for a menu that is open or about to open.
enum class UserInput {
    typing,      ///< a key that types or erases a character
    navigation,  ///< moves in a text, and in a menu that is open
    command,     ///< a click, a shortcut or a function key: may open a menu, but not the context menu
    menuRequest, ///< opens the context menu
};

/// The meaning of a key press with these modifiers.
[[nodiscard]] UserInput userInput(KeyCode key, EventFlags flags);

} // namespace quillane::core

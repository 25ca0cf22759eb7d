// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quillane {

class X11Keymap;

/// The Latin character, a lower-case letter or a sign, by which a shortcut names the key while the current group has no
/// Latin letters: that of the first group that has some, else that of a US keyboard. None while the current group has
/// Latin letters, whose own positions count, and for a key without a character.
[[nodiscard]] std::optional<char> latinKey(const X11Keymap& keymap, unsigned group, std::uint32_t keycode);

} // namespace quillane

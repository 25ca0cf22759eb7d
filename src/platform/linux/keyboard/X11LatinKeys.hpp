// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quillane {

class X11Keymap;

/// The Latin character, a small letter or a sign, by which a shortcut names the key while the group in use has no Latin
/// letters: that of the first group which has, else that of a keyboard of the United States. None while the group in
/// use has Latin letters, whose own place counts, and for a key without a character.
[[nodiscard]] std::optional<char> latinKey(const X11Keymap& keymap, unsigned group, std::uint32_t keycode);

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quillane {

/// The character, a small letter or a sign, that a keyboard of the United States has on one of its three rows of
/// letters. The key code is that of Linux plus 8, as X11 and Qt on Wayland have it.
[[nodiscard]] std::optional<char> latinKeyInPlace(std::uint32_t keycode);

/// The same, where the layout is not known, for a key whose symbol (Unicode) belongs to a layout without Latin letters.
/// None for any other.
[[nodiscard]] std::optional<char> latinKeyBySymbol(std::uint32_t keycode, char32_t symbol);

} // namespace quillane

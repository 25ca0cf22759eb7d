// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace quillane {

/// The character, a lower-case letter or a sign, on one of the three letter rows of a US keyboard. The key code is
/// Linux's plus 8, as in X11 and Qt on Wayland.
[[nodiscard]] std::optional<char> latinKeyInPlace(std::uint32_t keycode);

/// The same without a known layout, for a key whose symbol (Unicode) belongs to a layout without Latin letters. None
/// for any other.
[[nodiscard]] std::optional<char> latinKeyBySymbol(std::uint32_t keycode, char32_t symbol);

} // namespace quillane

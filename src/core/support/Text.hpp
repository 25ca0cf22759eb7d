// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillane::core {

/// The text without leading and trailing white space and line ends (Unicode property White_Space). UTF-8; a part of the
/// given text.
[[nodiscard]] std::string_view trimmedOfWhiteSpace(std::string_view text);

/// The text without the invisible characters that set its direction (Unicode property Bidi_Control), which come along
/// when an address is copied out of right-to-left text. UTF-8; ill-formed bytes stay.
[[nodiscard]] std::string withoutDirectionMarks(std::string_view text);

/// The text as a terminal may print it: control characters other than line feed and tab (Unicode general category Cc),
/// which a terminal would obey, become escapes as in JSON ("\\u001b"); ill-formed bytes become U+FFFD.
[[nodiscard]] std::string withControlsEscaped(std::string_view text);

} // namespace quillane::core

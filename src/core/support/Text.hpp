// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillane::core {

/// The text without the white space and line ends (Unicode property White_Space) around it. UTF-8; it stays a part of
/// the text given.
[[nodiscard]] std::string_view trimmedOfWhiteSpace(std::string_view text);

/// The text without the invisible characters that set its direction (Unicode property Bidi_Control), which come along
/// when an address is copied out of right-to-left text. UTF-8; ill-formed bytes stay.
[[nodiscard]] std::string withoutDirectionMarks(std::string_view text);

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillane::core {

/// The first `count` user-perceived characters of UTF-8 text (extended grapheme clusters, Unicode UAX #29): a letter
/// with its points is one, and a carriage return with its line feed is one.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The bytes with each ill-formed sequence replaced by U+FFFD.
[[nodiscard]] std::string validUtf8(std::string bytes);

} // namespace quillane::core

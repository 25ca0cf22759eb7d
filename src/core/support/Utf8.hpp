// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillane::core {

/// Whether the bytes are well-formed UTF-8 (Unicode Standard, table 3-7).
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The text in lower case, by language-independent rules. The text must be well-formed.
[[nodiscard]] std::string lowercased(std::string_view text);

/// UTF-16 as UTF-8, with U+FFFD in place of each lone surrogate. Unlike ICU's own, leaves nothing of the text on the
/// stack.
[[nodiscard]] std::string utf8OfUtf16(std::u16string_view text);

} // namespace quillane::core

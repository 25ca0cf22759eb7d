// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

namespace quillane::core::rtlInputLanguage {

/// Whether an input source with these languages (BCP 47, the main one first) writes from right to left: the script of
/// the first one decides, the likely script (CLDR) when the tag names none. False without a known language.
[[nodiscard]] bool isRightToLeft(std::span<const std::string> languages);

} // namespace quillane::core::rtlInputLanguage

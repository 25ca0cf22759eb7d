// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

namespace quillane::core {

/// Two Arabic letters that one key types, and the single character that some key maps and applications have for them
/// (Unicode, Arabic Presentation Forms-B).
struct LamAlef {
    std::u32string_view letters;
    char32_t isolatedForm;
};

inline constexpr std::array lamAlefs{
    LamAlef{U"\u0644\u0622", 0xfef5}, // with madda above
    LamAlef{U"\u0644\u0623", 0xfef7}, // with hamza above
    LamAlef{U"\u0644\u0625", 0xfef9}, // with hamza below
    LamAlef{U"\u0644\u0627", 0xfefb},
};

} // namespace quillane::core

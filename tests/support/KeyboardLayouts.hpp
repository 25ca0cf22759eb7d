// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace quillane::testing {

/// The characters of an ANSI keyboard's keys, row by row, left to right; a blank is nothing.
struct KeyRows {
    std::u32string_view plain;
    std::u32string_view shift;
    std::u32string_view option;
    std::u32string_view capsLock; ///< empty: as without
};

inline constexpr std::array<core::KeyCode, 47> rowKeys{
    50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24, // ` to =
    12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 42, // Q to the backslash
    0,  1,  2,  3,  5,  4,  38, 40, 37, 41, 39,         // A to '
    6,  7,  8,  9,  11, 45, 46, 43, 47, 44,             // Z to /
};

/// The character of a key; a blank when it has none.
[[nodiscard]] inline char32_t character(const KeyRows& rows, std::size_t key, const core::KeyStroke& stroke) {
    const auto in = [key](std::u32string_view row) { return key < row.size() ? row[key] : U' '; };
    if (stroke.option) {
        return stroke.shift ? U' ' : in(rows.option);
    }
    if (stroke.capsLock && in(rows.capsLock) != U' ' && in(rows.capsLock) != in(rows.plain)) {
        return in(stroke.shift ? rows.plain : rows.capsLock);
    }
    return in(stroke.shift ? rows.shift : rows.plain);
}

[[nodiscard]] inline core::KeyboardLayout layoutOf(const KeyRows& rows) {
    return core::KeyboardLayout::read(
        [&](const core::KeyStroke& stroke) -> core::KeyboardLayout::Output {
            if (stroke.keyCode == core::spaceKey) {
                return {stroke.option ? U"" : U" "};
            }
            const auto key = std::ranges::find(rowKeys, stroke.keyCode);
            const auto typed =
                key == rowKeys.end() ? U' ' : character(rows, static_cast<std::size_t>(key - rowKeys.begin()), stroke);
            return {typed == U' ' ? std::u32string() : std::u32string(1, typed)};
        },
        [](const auto&, const auto&) { return std::u32string(); });
}

[[nodiscard]] inline core::KeyboardLayout englishLayout() {
    return layoutOf({.plain = U"`1234567890-=qwertyuiop[]\\asdfghjkl;'zxcvbnm,./",
                     .shift = U"~!@#$%^&*()_+QWERTYUIOP{}|ASDFGHJKL:\"ZXCVBNM<>?",
                     .option = {},
                     .capsLock = U"`1234567890-=QWERTYUIOP[]\\ASDFGHJKL;'ZXCVBNM,./"});
}

/// SI-1452, with some of its points; Caps Lock types capital English letters.
[[nodiscard]] inline core::KeyboardLayout hebrewLayout() {
    return layoutOf({.plain = U";1234567890-=/'קראטוןםפ][\\שדגכעיחלךף,זסבהנמצתץ.",
                     .shift = U"~!@#$%^&*)(_+QWERTYUIOP}{|ASDFGHJKL:\"ZXCVBNM><?",
                     .option = U"        \u00d7\u200e\u200f\u05be \u05c2\u05c1\u05b8\u05b3   \u05b9  \u05b7\u05b2",
                     .capsLock = U";1234567890-=QWERTYUIOP][\\ASDFGHJKL:,ZXCVBNM><."});
}

[[nodiscard]] inline core::KeyboardLayout arabicLayout() {
    return layoutOf(
        {.plain = U"ذ1234567890-=ضصثقفغعهخحجد\\شسيبلاتنمكطئءؤرﻻىةوزظ",
         .shift = U"\u0651!@#$%^&*)(_+\u064e\u064b\u064f\u064cﻹإ`÷×؛<>…\u0650\u064d][ﻷأـ،/:\"~\u0652}{ﻵآ',.؟",
         .option = {},
         .capsLock = {}});
}

} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Text.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(Text, TrimsWhiteSpaceAndLineEndsOnly) {
    EXPECT_EQ(trimmedOfWhiteSpace(" \t\n\v\f\r\u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000a b "),
              "a b");
    EXPECT_EQ(trimmedOfWhiteSpace("\u200Ba\u200F"), "\u200Ba\u200F") << "zero-width characters are no white space";
    EXPECT_EQ(trimmedOfWhiteSpace("שלום \n"), "שלום");
}

TEST(Text, TrimsTextsOfWhiteSpaceToNothing) {
    EXPECT_EQ(trimmedOfWhiteSpace(""), "");
    EXPECT_EQ(trimmedOfWhiteSpace(" \u3000\n"), "");
}

TEST(Text, TrimmingLeavesBytesThatAreNotText) {
    EXPECT_EQ(trimmedOfWhiteSpace(" \xFF\xC2 "), "\xFF\xC2");
}

TEST(Text, DirectionMarksAreDroppedWhereverTheyStand) {
    EXPECT_EQ(withoutDirectionMarks("\u200E\u200F\u061C\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069"), "");
    EXPECT_EQ(withoutDirectionMarks("\u200Fא\u200E b\u2069"), "א b");
    EXPECT_EQ(withoutDirectionMarks("\u200B\u200D\uFEFF\u2065"), "\u200B\u200D\uFEFF\u2065");
    EXPECT_EQ(withoutDirectionMarks("a\xE2\x80\xFF\xFF"), "a\xE2\x80\xFF\xFF");
    EXPECT_EQ(withoutDirectionMarks(""), "");
}

TEST(Text, ControlCharactersThatATerminalWouldObeyAreEscaped) {
    EXPECT_EQ(withControlsEscaped("\x1b]0;title\a\r\b\x7f"), "\\u001b]0;title\\u0007\\u000d\\u0008\\u007f");
    EXPECT_EQ(withControlsEscaped("\u009b31m\u0080\u009f"), "\\u009b31m\\u0080\\u009f") << "the C1 controls";
    EXPECT_EQ(withControlsEscaped(std::string("a\0b", 3)), "a\\u0000b");
    EXPECT_EQ(withControlsEscaped("\x9b\xc2"), "\uFFFD\uFFFD") << "a control of an eight-bit terminal";
    EXPECT_EQ(withControlsEscaped("two\nlines\tand שלום · é \u00A0\u200F"), "two\nlines\tand שלום · é \u00A0\u200F");
    EXPECT_EQ(withControlsEscaped(""), "");
}

} // namespace
} // namespace quillane::core

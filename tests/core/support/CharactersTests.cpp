// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Characters.hpp"

#include "core/support/Utf8.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(Characters, CountsUserPerceivedCharacters) {
    EXPECT_EQ(firstCharacters("abc", 2), "ab");
    EXPECT_EQ(firstCharacters("e\xCC\x81x", 1), "e\xCC\x81");
    EXPECT_EQ(firstCharacters("שָׁלוֹם", 2), "שָׁל");
    EXPECT_EQ(firstCharacters("\r\n\r\nx", 2), "\r\n\r\n");
    EXPECT_EQ(firstCharacters("👨‍👩‍👧‍👦🇮🇱a", 2), "👨‍👩‍👧‍👦🇮🇱");
}

TEST(Characters, KeepsShorterTextsWhole) {
    EXPECT_EQ(firstCharacters("", 5), "");
    EXPECT_EQ(firstCharacters("abc", 3), "abc");
    EXPECT_EQ(firstCharacters("שלום", 4), "שלום");
    EXPECT_EQ(firstCharacters("abc", 0), "");
}

TEST(Characters, DetectsAndReplacesIllFormedBytes) {
    for (const std::string_view bytes : {"\xff", "a\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80"}) {
        EXPECT_FALSE(isValidUtf8(bytes));
        EXPECT_TRUE(isValidUtf8(validUtf8(std::string(bytes))));
    }
    EXPECT_TRUE(isValidUtf8("\xF0\x9F\x98\x80 שלום"));
    const std::string ascii(40, 'a');
    for (std::size_t at = 0; at <= ascii.size(); ++at) { // ASCII is read by the word
        for (const std::string_view bytes : {"\xff", "\x80", "\xd7"}) {
            EXPECT_FALSE(isValidUtf8(std::string(ascii).insert(at, bytes))) << at;
        }
        EXPECT_TRUE(isValidUtf8(std::string(ascii).insert(at, "ש"))) << at;
    }
    EXPECT_EQ(validUtf8("a\xff"
                        "b"),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(validUtf8("שלום"), "שלום");
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/SearchText.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace quillane::core {
namespace {

bool matches(std::string_view text, std::string_view query) {
    return SearchText(text).matches(SearchQuery(query));
}

TEST(SearchText, IgnoresCaseInAllScripts) {
    EXPECT_TRUE(matches("Hello World", "hELLO"));
    EXPECT_TRUE(matches("ΑΒΓ Σίσυφος", "αβγ"));
    EXPECT_TRUE(matches("Σίσυφος", "ΣΊΣΥΦΟΣ"));
    EXPECT_TRUE(matches("Привет", "ПРИВЕТ"));
    EXPECT_TRUE(matches("STRASSE", "straße"));
    EXPECT_FALSE(matches("Hello", "hallo"));
}

TEST(SearchText, ABareWordFindsItsPointedForm) {
    EXPECT_TRUE(matches("שָׁלוֹם", "שלום"));
    EXPECT_TRUE(matches("שׁלום", "שלום"));     // U+FB2A, shin with its dot in one code point
    EXPECT_TRUE(matches("בְּרֵאשִׁ֖ית", "בראשית")); // with cantillation
    EXPECT_TRUE(matches("مَرْحَبًا", "مرحبا"));
    EXPECT_TRUE(matches("قُرْآن", "قران"));
    EXPECT_TRUE(matches("رَحْمٰن", "رحمن")); // superscript alef
}

TEST(SearchText, APointedWordFindsItsBareForm) {
    EXPECT_TRUE(matches("שלום", "שָׁלוֹם"));
    EXPECT_TRUE(matches("مرحبا", "مَرْحَبًا"));
}

TEST(SearchText, IgnoresAccentsComposedOrNot) {
    EXPECT_TRUE(matches("Café", "cafe"));
    EXPECT_TRUE(matches("Cafe\xCC\x81", "café"));
    EXPECT_TRUE(matches("naive", "naïve"));
    EXPECT_TRUE(matches("Việt Nam", "viet nam"));
}

TEST(SearchText, KeepsMarksThatMakeAnotherLetter) {
    EXPECT_FALSE(matches("かき", "がき"));
    EXPECT_FALSE(matches("कि", "कु"));
    EXPECT_TRUE(matches("हिन्दी", "हिन्दी"));
}

TEST(SearchText, IgnoresInvisibleDirectionMarksAndJoiners) {
    EXPECT_TRUE(matches("ab\xE2\x80\x8F"
                        "cd",
                        "abcd"));
    EXPECT_TRUE(matches("abcd", "a\xE2\x80\x8E"
                                "bcd"));
    EXPECT_TRUE(matches("می‌خواهم", "میخواهم"));
}

TEST(SearchText, EveryKindOfWhiteSpaceSeparatesTerms) {
    EXPECT_EQ(SearchQuery(" a\tb\nc\xC2\xA0"
                          "d\xE2\x80\xA8"
                          "e\xE3\x80\x80"
                          "f ")
                  .terms()
                  .size(),
              6U);
    EXPECT_TRUE(SearchQuery("\xD6\xB8").isEmpty());
    EXPECT_TRUE(SearchQuery("").isEmpty());
}

TEST(SearchText, FindsAcrossMixedScriptsWhateverTheText) {
    // Mostly one alphabet, several alphabets, and one without an alphabet.
    EXPECT_TRUE(matches("שלום hello “quoted” שלום שלום שלום שלום שלום שלום שלום", "“quoted”"));
    EXPECT_TRUE(matches("שלום مرحبا Привет 你好", "你好 привет مرحبا שלום"));
    EXPECT_TRUE(matches("你好世界，今天天气很好", "天气"));
    EXPECT_FALSE(matches("שלום", "مرحبا"));
    EXPECT_FALSE(matches("abc", "\xD7\xA9"));
    EXPECT_TRUE(matches(std::string("a\0b\x7f\x01", 5), std::string_view("\0b\x7f", 3)));
}

TEST(SearchText, LettersOfDifferentAlphabetsAreNeverConfused) {
    // Every block of 128 code points has a letter at the same position; no two of them are equal.
    for (const auto* text : {"ааааааааאאа", "אאאאאאאאאאא", "ααααααααααα"}) {
        for (const auto* term : {"а", "א", "α", "a"}) {
            EXPECT_EQ(matches(text, term), std::string_view(text).find(term) != std::string_view::npos) << text << term;
        }
    }
}

TEST(SearchText, ATextOfOneAlphabetTakesOneByteACharacter) {
    std::string hebrew;
    for (int i = 0; i < 1'000; ++i) {
        hebrew += "שָׁלוֹם ";
    }
    EXPECT_EQ(SearchText(hebrew).byteCount(), 5'000U);
}

TEST(SearchText, FewCharactersOfOtherAlphabetsTakeSixBytesEach) {
    const auto text = [](int hebrew, int cyrillic) {
        std::string all;
        for (int i = 0; i < hebrew; ++i) {
            all += "ש";
        }
        for (int i = 0; i < cyrillic; ++i) {
            all += "д";
        }
        return SearchText(all);
    };
    EXPECT_EQ(text(94, 6).byteCount(), 94U + 6 * 6);
    EXPECT_EQ(text(93, 7).byteCount(), 3 * 100U) << "more than a sixteenth: two bytes each, and a trace";
    EXPECT_EQ(text(6, 94).byteCount(), 94U + 6 * 6);
}

TEST(SearchText, ContainsBytesAgreesWithTheStandardSearch) {
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        std::string text(random() % 200, 'a');
        for (auto& c : text) {
            c = static_cast<char>('a' + random() % 2);
        }
        std::string needle(1 + random() % 9, 'a');
        for (auto& c : needle) {
            c = static_cast<char>('a' + random() % 2);
        }
        EXPECT_EQ(containsBytes(text, needle), text.find(needle) != std::string::npos) << text << " " << needle;
    }
}

TEST(SearchText, ATextOfManyScriptsAgreesWithTheStandardSearch) {
    // U+4E01 and U+4F00 leave the same trace, as do U+0401 and U+0500.
    const std::array<std::string_view, 5> letters{"丁", "伀", "א", "Ё", "Ԁ"};
    std::mt19937 random(2);
    for (int round = 0; round < 20'000; ++round) {
        const auto word = [&](std::size_t count) {
            std::string made;
            for (; count > 0; --count) {
                made += letters[random() % letters.size()];
            }
            return made;
        };
        const auto text = word(random() % 200);
        const auto needle = word(1 + random() % 4);
        // Cyrillic letters are folded to lower case on both sides, which keeps them apart.
        EXPECT_EQ(matches(text, needle), text.find(needle) != std::string::npos) << text << " " << needle;
    }
}

TEST(SearchText, FindsCharactersOfEveryPlane) {
    EXPECT_TRUE(matches("你好 😀 𝔸𐤀 שלום", "😀"));
    EXPECT_TRUE(matches("你好 😀 𐤀 שלום", "𐤀 שלום"));
    EXPECT_FALSE(matches("你好 😀 שלום", "😁"));
    EXPECT_TRUE(matches("ab 😀 cd", "😀"));
    EXPECT_FALSE(matches("ab 😀 cd", "😁"));
}

} // namespace
} // namespace quillane::core

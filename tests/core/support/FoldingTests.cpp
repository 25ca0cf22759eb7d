// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Folding.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(Folding, CaseAndAccentsAreGone) {
    EXPECT_EQ(folded("ÀÉÎ çñ Straße ΆΣς Ёлка"), U"aei cn strasse ασσ елка");
    EXPECT_EQ(folded("e\u0301"), U"e");
    EXPECT_EQ(folded("\u1E9B"), U"s"); // decomposed, and once more after its case
}

TEST(Folding, PointsAndVowelSignsAreGone) {
    EXPECT_EQ(folded("שָׁלוֹם"), U"שלום");
    EXPECT_EQ(folded("\uFB2A"), U"ש");
    EXPECT_EQ(folded("مَرْحَبًا"), U"مرحبا");
}

TEST(Folding, MarksOfOtherLettersStay) {
    EXPECT_EQ(folded("\u0915\u093F"), U"\u0915\u093F"); // a vowel sign
    EXPECT_EQ(folded("\u0915\u094D"), U"\u0915\u094D"); // virama
    EXPECT_EQ(folded("\u0915\u093C"), U"\u0915\u093C"); // nukta
    EXPECT_EQ(folded("\u304B\u3099"), U"\u304B\u3099"); // Japanese voicing
    EXPECT_EQ(folded("\u304C"), U"\u304B\u3099");
}

TEST(Folding, InvisibleCharactersAreGoneAndWhiteSpaceIsASpace) {
    EXPECT_EQ(folded("a\u200Fb\u200Dc\u00ADd\u2066e"), U"abcde");
    EXPECT_EQ(folded("a\tb\nc\u00A0d\u3000e\u2028f"), U"a b c d e f");
}

TEST(Folding, IllFormedBytesAreReplaced) {
    EXPECT_EQ(folded("a\xFF\xE2\x82z"), U"a\uFFFD\uFFFDz");
}

TEST(Folding, TheFirstAndTheLastCharacterOfTheTable) {
    using namespace std::string_view_literals;
    EXPECT_EQ(folded("\0a\0"sv), U"\0a\0"sv);
    EXPECT_EQ(folded("\u07FF\u0800"), U"\u07FF\u0800");
}

TEST(Folding, AppendsToWhatIsThere) {
    std::u32string text = U"x";
    appendFolded(text, "Y");
    EXPECT_EQ(text, U"xy");
}

} // namespace
} // namespace quillane::core

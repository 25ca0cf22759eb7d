// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypedWords.hpp"

#include "support/KeyboardLayouts.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

using retyping::CapsLock;
using retyping::TextUnit;

const KeyboardLayout english = testing::englishLayout();
const KeyboardLayout hebrew = testing::hebrewLayout();
const KeyboardLayout arabic = testing::arabicLayout();

/// The word that is taken, between brackets, and the strokes; an empty text for none.
std::string taken(std::string_view text, const KeyboardLayout& layout, std::size_t strokes) {
    const auto word = retyping::lastTypedWord(text, layout, CapsLock::off, strokes);
    if (!word) {
        return {};
    }
    return std::string(text.substr(0, word->begin)) + "[" +
           std::string(text.substr(word->begin, word->end - word->begin)) + "]" + std::string(text.substr(word->end)) +
           " " + std::to_string(word->strokes);
}

TEST(TypedWords, LastWordIsTakenWithoutTheSpacesAroundIt) {
    EXPECT_EQ(taken("hello akuo", english, 10), "hello [akuo] 4");
    EXPECT_EQ(taken("hello akuo  ", english, 12), "hello [akuo]   6");
    EXPECT_EQ(taken("akuo", english, 100), "[akuo] 4");
    EXPECT_EQ(taken("one\nakuo", english, 8), "one\n[akuo] 4");
}

TEST(TypedWords, PunctuationBelongsToTheWord) {
    EXPECT_EQ(taken("t, ckh,", english, 7), "t, [ckh,] 4");
}

TEST(TypedWords, NothingTypedIsNothingTaken) {
    EXPECT_EQ(taken("akuo", english, 0), "");
    EXPECT_EQ(taken("", english, 5), "");
    EXPECT_EQ(taken("  ", english, 2), "");
    EXPECT_EQ(taken("akuo  ", english, 2), "") << "only the spaces were typed";
}

TEST(TypedWords, WhatStoodThereBeforeIsLeft) {
    EXPECT_EQ(taken("helloakuo", english, 4), "hello[akuo] 4");
    EXPECT_EQ(taken("akuo ", english, 3), "ak[uo]  3");
}

TEST(TypedWords, OneKeyMayHaveTypedTwoLetters) {
    EXPECT_EQ(taken("سلام", arabic, 3), "[سلام] 3");
    EXPECT_EQ(taken("سلام", arabic, 2), "س[لام] 2");
    EXPECT_EQ(taken("سلام", arabic, 1), "سلا[م] 1");
    EXPECT_EQ(taken("\uFEFB", arabic, 1), "[\uFEFB] 1");
}

TEST(TypedWords, TwoKeysMayHaveTypedOneLetter) {
    constexpr KeyStroke quote{.keyCode = 39};
    auto international = english;
    international.outputs[quote] = {U"'", true};
    international.compositions[{quote, {.keyCode = 14}}] = U"é";
    EXPECT_EQ(taken("caf\u00e9", international, 5), "[café] 5");
    EXPECT_EQ(taken("caf\u00e9", international, 2), "caf[é] 2");
    EXPECT_EQ(taken("caf\u00e9", international, 1), "") << "half of a letter";
}

TEST(TypedWords, CharactersThatTheLayoutDoesNotTypeCountOnce) {
    EXPECT_EQ(taken("של😀", hebrew, 2), "ש[ל😀] 2");
    EXPECT_EQ(taken("שלa", hebrew, 1), "של[a] 1"); // as temporary English types it
    EXPECT_EQ(taken("ש\u05c1ל\u05d5", hebrew, 9), "[ש\u05c1לו] 4");
}

TEST(TypedWords, LastWordIsCutToItsLastCharacters) {
    EXPECT_EQ(retyping::lastWord("hello akuo ", 10), "akuo");
    EXPECT_EQ(retyping::lastWord("שלוםakuo", 4), "akuo");
    EXPECT_EQ(retyping::lastWord("a😀שב", 3), "😀שב");
    EXPECT_EQ(retyping::lastWord("  ", 4), "");
    EXPECT_EQ(retyping::lastWord("akuo", 0), "");
}

TEST(TypedWords, LengthsAreInTheUnitsOfTheApplication) {
    EXPECT_EQ(retyping::lengthIn(TextUnit::codePoint, "aש😀"), 3);
    EXPECT_EQ(retyping::lengthIn(TextUnit::utf16, "aש😀"), 4);
    EXPECT_EQ(retyping::unitOf("aש😀", 3), TextUnit::codePoint);
    EXPECT_EQ(retyping::unitOf("aש😀", 4), TextUnit::utf16);
    EXPECT_EQ(retyping::unitOf("aש", 2), TextUnit::codePoint);
    EXPECT_EQ(retyping::unitOf("aש😀", 6), std::nullopt);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/Retyping.hpp"

#include "support/KeyboardLayouts.hpp"

#include <gtest/gtest.h>

#include <array>

namespace quillane::core {
namespace {

using retyping::CapsLock;
using retyping::Source;
using retyping::Way;

const KeyboardLayout english = testing::englishLayout();
const KeyboardLayout hebrew = testing::hebrewLayout();
const KeyboardLayout arabic = testing::arabicLayout();

std::string retyped(std::string_view text, const KeyboardLayout& from, const KeyboardLayout& to) {
    return retyping::retyped(text, from, to, CapsLock::off);
}

std::string retypedInCapitals(std::string_view text, const KeyboardLayout& from, const KeyboardLayout& to) {
    return retyping::retyped(text, from, to, CapsLock::on);
}

TEST(Retyping, WordsBecomeThoseOfTheSameKeys) {
    EXPECT_EQ(retyped("akuo", english, hebrew), "שלום");
    EXPECT_EQ(retyped("שלום", hebrew, english), "akuo");
    EXPECT_EQ(retyped("lvpfh", english, arabic), "مرحبا");
    EXPECT_EQ(retyped("مرحبا", arabic, english), "lvpfh");
    EXPECT_EQ(retyped("", english, hebrew), "");
}

TEST(Retyping, PunctuationMovesWithItsKey) {
    EXPECT_EQ(retyped(",./;'q", english, hebrew), "תץ.ף,/");
    EXPECT_EQ(retyped("תץ.ף,/", hebrew, english), ",./;'q");
    EXPECT_EQ(retyped("(akuo)", english, hebrew), ")שלום(");
    EXPECT_EQ(retyped("fk 100%", english, hebrew), "כל 100%");
}

TEST(Retyping, OneKeyMayTypeTwoLetters) {
    EXPECT_EQ(retyped("b", english, arabic), "لا");
    EXPECT_EQ(retyped("لا", arabic, english), "b");
    EXPECT_EQ(retyped("\uFEFB", arabic, english), "b"); // as some applications insert it
    EXPECT_EQ(retyped("G", english, arabic), "لأ");
    EXPECT_EQ(retyped("sbl", english, arabic), "سلام");
    EXPECT_EQ(retyped("سلام", arabic, english), "sbl");
    EXPECT_EQ(retyped("مل", arabic, english), "lg");
}

TEST(Retyping, MarksAreTypedWithTheirModifiers) {
    EXPECT_EQ(retyped("QW~", english, arabic), "\u064e\u064b\u0651");
    EXPECT_EQ(retyped("م\u064eر", arabic, english), "lQv");
}

TEST(Retyping, WhatALayoutCannotTypeStays) {
    EXPECT_EQ(retyped("akuo é😀\nДа", english, hebrew), "שלום é😀\nДа");
    // The key of the point types nothing with AltGr in English.
    EXPECT_EQ(retyped("ש\u05c1ל", hebrew, english), "a\u05c1k");
    EXPECT_EQ(retyped("a\u05c1k", english, hebrew), "ש\u05c1ל");
    EXPECT_EQ(retyped("\xff"
                      "ak\xd7",
                      english, hebrew),
              "\xff"
              "של\xd7");
}

TEST(Retyping, OnlyTheTextIsRead) {
    EXPECT_EQ(retyped(std::string_view("akuo").substr(0, 2), english, hebrew), "של");
}

TEST(Retyping, DirectionMarksAndIsolatesSurvive) {
    const std::string marks = "\u200f\u2067\u202a\u061c\u2069\u200e";
    EXPECT_EQ(retyped("ak" + marks + "uo", english, hebrew), "של" + marks + "ום");
    EXPECT_EQ(retyped("של" + marks + "ום", hebrew, english), "ak" + marks + "uo"); // though AltGr types two of them
}

TEST(Retyping, CapitalsAreTypedWithShift) {
    EXPECT_EQ(retyped("AKUO", english, hebrew), "AKUO");
    EXPECT_EQ(retyped("A:", english, arabic), "\u0650:");
}

TEST(Retyping, CapsLockIsTakenBackWhereItWouldChangeNothing) {
    EXPECT_EQ(retypedInCapitals("AKUO 12", english, hebrew), "שלום 12");
    EXPECT_EQ(retypedInCapitals("LVPFH", english, arabic), "مرحبا");
    EXPECT_EQ(retypedInCapitals("مرحبا", arabic, english), "LVPFH");
    EXPECT_EQ(retypedInCapitals("AKuo", english, hebrew), "שלום"); // Shift with Caps Lock types small letters
}

TEST(Retyping, DeadKeyComposesWithTheNextKey) {
    constexpr KeyStroke quote{.keyCode = 39};
    constexpr KeyStroke space{.keyCode = spaceKey};
    auto international = english;
    international.outputs[quote] = {U"'", true};
    international.compositions[{quote, {.keyCode = 14}}] = U"é";
    international.compositions[{quote, space}] = U"'";
    EXPECT_EQ(retyped(",ק", hebrew, international), "é");
    EXPECT_EQ(retyped("é", international, hebrew), ",ק");
    EXPECT_EQ(retyped(",ד", hebrew, international), "'s"); // no composition: the accent, then the letter
    EXPECT_EQ(retyped("'s", international, hebrew), ",ד");
    EXPECT_EQ(retyped("'e", international, hebrew), ", ק"); // only a space keeps them apart
    EXPECT_EQ(retyped("s'e", international, hebrew), "ד, ק");
    EXPECT_EQ(retyped("'", international, hebrew), ",");
    EXPECT_EQ(retyped("של,", hebrew, international), "ak'");
    EXPECT_EQ(retyped(",😀", hebrew, international), "'😀");
    EXPECT_EQ(retyped("'e", international, international), "'e");
}

TEST(Retyping, AccentThatNoKeysTypeStays) {
    constexpr KeyStroke quote{.keyCode = 39};
    auto international = english;
    international.outputs[quote] = {U"'", true};
    international.compositions[{quote, {.keyCode = 14}}] = U"é";
    EXPECT_EQ(retyped("s'e", international, hebrew), "ד'ק"); // nothing types an accent before this letter
    international.compositions[{quote, {.keyCode = spaceKey}}] = U"´";
    EXPECT_EQ(retyped("s'e", international, hebrew), "ד'ק");
}

class RetypingWayTest : public ::testing::Test {
protected:
    static Source rightToLeft(const KeyboardLayout& layout) { return {true, layout}; }

    static Source leftToRight(const KeyboardLayout& layout) { return {false, layout}; }
};

TEST_F(RetypingWayTest, LettersOfTheSourceInEffectLeadToTheOtherDirection) {
    const std::array sources{leftToRight(english), rightToLeft(hebrew)};
    EXPECT_EQ(retyping::way("akuo", sources), (Way{0, 1}));
    const std::array reversed{rightToLeft(hebrew), leftToRight(english)};
    EXPECT_EQ(retyping::way("שלום", reversed), (Way{0, 1}));
}

TEST_F(RetypingWayTest, ScriptOfTheLettersCountsAfterTheSourceWasSwitched) {
    const std::array sources{rightToLeft(hebrew), leftToRight(english)};
    EXPECT_EQ(retyping::way("akuo", sources), (Way{1, 0}));
    EXPECT_EQ(retyping::way("AKUO", sources), (Way{1, 0})); // Hebrew has these as well, but they are not its letters
}

TEST_F(RetypingWayTest, LastUsedOfSeveralRightToLeftSourcesIsTheTarget) {
    const std::array sources{leftToRight(english), rightToLeft(arabic), rightToLeft(hebrew)};
    EXPECT_EQ(retyping::way("akuo", sources), (Way{0, 1}));
}

TEST_F(RetypingWayTest, SourceThatTypesTheLettersIsTheOrigin) {
    const std::array sources{leftToRight(english), rightToLeft(arabic), rightToLeft(hebrew)};
    EXPECT_EQ(retyping::way("שלום", sources), (Way{2, 0}));
    EXPECT_EQ(retyping::way("مرحبا", sources), (Way{1, 0}));
    EXPECT_EQ(retyping::way("akuo akuo שלום", sources), (Way{0, 1}));
}

TEST_F(RetypingWayTest, WithoutLettersTheSourceInEffectIsTheOrigin) {
    const std::array sources{rightToLeft(hebrew), leftToRight(english)};
    EXPECT_EQ(retyping::way(".,", sources), (Way{0, 1}));
}

TEST_F(RetypingWayTest, LettersOfNoSourceHaveNoWay) {
    const std::array sources{rightToLeft(hebrew), leftToRight(english)};
    EXPECT_EQ(retyping::way("Привет,", std::span(sources)), std::nullopt);
}

TEST_F(RetypingWayTest, OneDirectionHasNoWay) {
    const std::array sources{rightToLeft(hebrew), rightToLeft(arabic)};
    EXPECT_EQ(retyping::way("שלום", sources), std::nullopt);
    EXPECT_EQ(retyping::way("akuo", {}), std::nullopt);
}

} // namespace
} // namespace quillane::core

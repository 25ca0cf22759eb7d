// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/LocalizedText.hpp"

#include "core/localization/Texts.hpp"

#include <gtest/gtest.h>

#include <concepts>
#include <string>

namespace quillane::core {
namespace {

TEST(LocalizedText, HebrewIsTheKeyItself) {
    EXPECT_EQ(texts::pauseAll.rendered(AppLanguage::hebrew), "השהיית הכול");
}

TEST(LocalizedText, OtherLanguagesComeFromTheTable) {
    EXPECT_EQ(texts::pauseAll.rendered(AppLanguage::english), "Pause all");
    EXPECT_EQ(texts::pauseAll.rendered(AppLanguage::arabic), "إيقاف الكل مؤقتًا");
}

TEST(LocalizedText, FindsItsTranslationByTheHebrewTextAlone) {
    EXPECT_EQ(LocalizedText("הגדרות").rendered(AppLanguage::english), "Settings");
}

TEST(LocalizedText, AKeyWithoutAnEntryShowsThroughInEveryLanguage) {
    const LocalizedText text("משפט שאינו בטבלה");
    for (const auto language : allLanguages) {
        EXPECT_EQ(text.rendered(language), "משפט שאינו בטבלה");
    }
}

TEST(LocalizedText, AKeyThatOnlyBeginsLikeAnEntryHasNone) {
    EXPECT_EQ(LocalizedText("הגדרות ").rendered(AppLanguage::english), "הגדרות ");
}

TEST(LocalizedText, TheEmptyTextRendersEmpty) {
    EXPECT_EQ(LocalizedText().rendered(AppLanguage::arabic), "");
}

TEST(LocalizedText, APlainArgumentTakesThePlaceOfThePlaceholder) {
    EXPECT_EQ(texts::keyboardLanguage("עברית").rendered(AppLanguage::english), "Keyboard language: עברית");
}

TEST(LocalizedText, AMessageTakesExactlyTheArgumentsOfItsPlaceholders) {
    using Message = decltype(texts::keyboardLanguage);
    static_assert(std::invocable<Message, std::string>);
    static_assert(std::invocable<Message, LocalizedText>);
    static_assert(!std::invocable<Message>);
    static_assert(!std::invocable<Message, std::string, std::string>);
    static_assert(!std::invocable<Message, int>);
    static_assert(!std::convertible_to<Message, LocalizedText>);
}

TEST(LocalizedText, ANestedTextIsRenderedInTheLanguageOfItsParent) {
    const auto text = texts::keyboardLanguage(texts::general);
    EXPECT_EQ(text.rendered(AppLanguage::english), "Keyboard language: General");
    EXPECT_EQ(text.rendered(AppLanguage::hebrew), "שפת המקלדת: \u2068כללי\u2069");
    EXPECT_EQ(text.rendered(AppLanguage::arabic), "لغة لوحة المفاتيح: \u2068عام\u2069");
}

TEST(LocalizedText, NestsToAnyDepth) {
    const auto inner = texts::permissionsApproved("1");
    const auto text = texts::keyboardLanguage(LocalizedText("<%@>", {inner}));
    EXPECT_EQ(text.rendered(AppLanguage::english), "Keyboard language: <Permissions approved: 1 of 2>");
}

TEST(LocalizedText, WithoutArgumentsNothingIsFormatted) {
    EXPECT_EQ(LocalizedText("100% %@ %% %d").rendered(AppLanguage::english), "100% %@ %% %d");
}

TEST(LocalizedText, WithArgumentsADoubledPercentSignIsOne) {
    EXPECT_EQ(LocalizedText("%@: 50%%", {"a"}).rendered(AppLanguage::english), "a: 50%");
    EXPECT_EQ(LocalizedText("%%@ %@", {"a"}).rendered(AppLanguage::english), "%@ a");
}

TEST(LocalizedText, OtherPercentSequencesStayAsTheyAre) {
    EXPECT_EQ(LocalizedText("%@ %d %s %", {"a"}).rendered(AppLanguage::english), "a %d %s %");
}

TEST(LocalizedText, ArgumentsAreTakenInOrder) {
    EXPECT_EQ(LocalizedText("%@%@-%@", {"a", "b", "c"}).rendered(AppLanguage::english), "ab-c");
}

TEST(LocalizedText, APercentSignInsideAnArgumentIsNotFormatted) {
    EXPECT_EQ(LocalizedText("%@ %@", {"%@%%", "b"}).rendered(AppLanguage::english), "%@%% b");
}

TEST(LocalizedText, SurplusArgumentsAreLeftOut) {
    EXPECT_EQ(LocalizedText("%@", {"a", "b"}).rendered(AppLanguage::english), "a");
    EXPECT_EQ(LocalizedText("none", {"a"}).rendered(AppLanguage::english), "none");
}

TEST(LocalizedText, SurplusPlaceholdersStayVisible) {
    EXPECT_EQ(LocalizedText("%@ %@", {"a"}).rendered(AppLanguage::english), "a %@");
}

TEST(LocalizedText, AnArgumentMayHoldZeroBytes) {
    using namespace std::string_literals;
    EXPECT_EQ(LocalizedText("<%@>", {"a\0b"s}).rendered(AppLanguage::english), "<a\0b>"s);
}

TEST(LocalizedText, IsEqualByKeyAndArguments) {
    EXPECT_EQ(texts::keyboardLanguage("a"), texts::keyboardLanguage("a"));
    EXPECT_NE(texts::keyboardLanguage("a"), texts::keyboardLanguage("b"));
    EXPECT_NE(texts::keyboardLanguage("כללי"), texts::keyboardLanguage(texts::general));
    EXPECT_NE(LocalizedText(texts::pauseAll), LocalizedText(texts::resume));
    EXPECT_NE(LocalizedText("%@"), LocalizedText("%@", {"a"}));
}

TEST(LocalizedTextInterpolation, LiteralPiecesBecomeTheKey) {
    EXPECT_EQ(LocalizedText::Interpolation().appendLiteral("א").appendLiteral("ב").text(), LocalizedText("אב"));
}

TEST(LocalizedTextInterpolation, EachValueBecomesAPlaceholderAndAnArgument) {
    const auto text = LocalizedText::Interpolation()
                          .appendLiteral("a ")
                          .appendInterpolation("text")
                          .appendLiteral(" b ")
                          .appendInterpolation(-42)
                          .appendInterpolation(true)
                          .text();
    EXPECT_EQ(text, LocalizedText("a %@ b %@%@", {"text", "-42", "true"}));
}

TEST(LocalizedTextInterpolation, ANestedTextStaysNested) {
    const auto text = LocalizedText::Interpolation().appendInterpolation(LocalizedText(texts::settings)).text();
    EXPECT_EQ(text.rendered(AppLanguage::arabic), "الإعدادات");
    EXPECT_EQ(text, LocalizedText("%@", {LocalizedText("הגדרות")}));
}

TEST(LocalizedTextInterpolation, MeetsItsTranslationThroughTheKeyItBuilds) {
    const auto text = LocalizedText::Interpolation()
                          .appendLiteral("הרשאות שניתנו: ")
                          .appendInterpolation(1)
                          .appendLiteral(" מתוך 2")
                          .text();
    EXPECT_EQ(text.rendered(AppLanguage::english), "Permissions approved: 1 of 2");
}

} // namespace
} // namespace quillane::core

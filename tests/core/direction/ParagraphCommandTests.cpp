// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/ParagraphCommand.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane::core {
namespace {

using paragraphCommand::index;
using Titles = std::vector<std::string>;

TEST(ParagraphCommand, TakesTheOneOfTheParagraphSection) {
    const Titles titles{"Paragraph", "  Default  ", "Right to Left", "Left to Right", "Selection", "Right to Left"};
    EXPECT_EQ(index(titles, "Right to Left"), 2U);
    EXPECT_EQ(index(titles, "Left to Right"), 3U);
    EXPECT_EQ(index(titles, "Default"), 1U);
}

TEST(ParagraphCommand, WithoutTheHeadingTheSearchStartsAtTheTop) {
    EXPECT_EQ(index(Titles({"Right to Left", "Left to Right", "Selection", "Right to Left"}), "Right to Left"), 0U);
}

TEST(ParagraphCommand, WithoutTheSelectionSectionItEndsAtTheEnd) {
    EXPECT_EQ(index(Titles({"Paragraph", "Left to Right", "Right to Left"}), "Right to Left"), 2U);
    EXPECT_EQ(index(Titles({"Default", "Left to Right", "Right to Left"}), "Right to Left"), 2U);
}

TEST(ParagraphCommand, TheSelectionSectionIsNeverTouched) {
    EXPECT_EQ(index(Titles({"Paragraph", "Left to Right", "Selection", "Right to Left"}), "Right to Left"),
              std::nullopt);
    EXPECT_EQ(index(Titles({"Selection", "Right to Left"}), "Right to Left"), std::nullopt);
}

TEST(ParagraphCommand, SelectionBeforeParagraphGivesNothing) {
    EXPECT_EQ(index(Titles({"Selection", "Right to Left", "Paragraph", "Right to Left"}), "Right to Left"),
              std::nullopt);
}

TEST(ParagraphCommand, EmptySectionGivesNothing) {
    EXPECT_EQ(index(Titles({"Paragraph", "Selection", "Right to Left"}), "Right to Left"), std::nullopt);
    EXPECT_EQ(index(Titles({"Paragraph"}), "Right to Left"), std::nullopt);
    EXPECT_EQ(index(Titles{}, "Right to Left"), std::nullopt);
}

TEST(ParagraphCommand, OnlyTheTitlesAreTrimmed) {
    EXPECT_EQ(index(Titles({"\u00A0\u2003\tParagraph\r\n", "\u2028Right to Left\u3000"}), "Right to Left"), 1U);
    EXPECT_EQ(index(Titles({"Right to Left"}), " Right to Left"), std::nullopt);
}

TEST(ParagraphCommand, TheFirstHeadingAndTheFirstItemCount) {
    EXPECT_EQ(index(Titles({"Paragraph", "Right to Left", "Paragraph", "Right to Left"}), "Right to Left"), 1U);
}

TEST(ParagraphCommand, TitlesAreComparedExactly) {
    EXPECT_EQ(index(Titles({"right to left", "Right  to Left", "Right to Left…"}), "Right to Left"), std::nullopt);
}

TEST(ParagraphCommand, ActionsAreThoseOfTheParagraph) {
    EXPECT_EQ(paragraphCommand::actionIdentifier(WritingDirection::rightToLeft),
              "makeBaseWritingDirectionRightToLeft:");
    EXPECT_EQ(paragraphCommand::actionIdentifier(WritingDirection::leftToRight),
              "makeBaseWritingDirectionLeftToRight:");
}

TEST(ParagraphCommand, IsFoundInEveryLanguageOfTheApplication) {
    const auto& labels = *supportedApplication("org.chromium.Chromium")->labels;
    const std::vector<Titles> menus{{"Default", "Left to Right", "Right to Left"},
                                    {"\u200Fברירת מחדל", "\u200Fמשמאל לימין", "\u200Fמימין לשמאל"},
                                    {"\u200Fالتلقائي", "\u200Fمن اليسار لليمين", "\u200Fمن اليمين لليسار"},
                                    {"\u200Fپیش\u200Cفرض", "\u200Fچپ به راست", "\u200Fراست به چپ"},
                                    {"\u200Fڈیفالٹ", "\u200Fبائیں سے دائیں", "\u200Fدائیں سے بائیں"},
                                    {"Par défaut", "De gauche à droite", "De droite à gauche"},
                                    {"Standard", "Rechtsläufig", "Linksläufig"},
                                    {"По умолчанию", "Слева направо", "Справа налево"},
                                    {"Predeterminado", "De izquierda a derecha", "De derecha a izquierda"}};
    for (const auto& titles : menus) {
        EXPECT_EQ(index(titles, labels, WritingDirection::leftToRight), 1U) << titles[1];
        EXPECT_EQ(index(titles, labels, WritingDirection::rightToLeft), 2U) << titles[2];
    }
    EXPECT_EQ(index(Titles({"Sinistra a destra"}), labels, WritingDirection::leftToRight), std::nullopt);
}

TEST(ParagraphCommand, SectionsHoldInEveryLanguage) {
    constexpr DirectionLabels labels{.rightToLeft = {.hebrew = "ימין"},
                                     .leftToRight = {.hebrew = "שמאל"},
                                     .paragraph = {.english = "Paragraph", .hebrew = "פסקה"},
                                     .selection = {.english = "Selection", .hebrew = "בחירה"}};
    const Titles titles{"ימין", "\u200Fפסקה", "שמאל", "בחירה", "ימין"};
    EXPECT_EQ(index(titles, labels, WritingDirection::leftToRight), 2U);
    EXPECT_EQ(index(titles, labels, WritingDirection::rightToLeft), std::nullopt);
}

} // namespace
} // namespace quillane::core

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

} // namespace
} // namespace quillane::core

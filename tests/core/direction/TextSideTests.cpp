// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/TextSide.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

constexpr HorizontalSpan field{100, 300};

TEST(TextSide, AShortLineIsOnTheSideWhereItsTextBegins) {
    EXPECT_EQ(directionOfLine(field, {103, 160}), WritingDirection::leftToRight);
    EXPECT_EQ(directionOfLine(field, {240, 297}), WritingDirection::rightToLeft);
}

TEST(TextSide, TheCursorOfAnEmptyFieldHasNoWidth) {
    EXPECT_EQ(directionOfLine(field, {103, 103}), WritingDirection::leftToRight);
    EXPECT_EQ(directionOfLine(field, {297, 297}), WritingDirection::rightToLeft);
}

TEST(TextSide, AScrollBarDoesNotCount) {
    EXPECT_EQ(directionOfLine(field, {103, 282}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {118, 297}), std::nullopt);
}

TEST(TextSide, TheDifferenceOfTheSidesIsMoreThanATenthOfTheField) {
    EXPECT_EQ(directionOfLine(field, {100, 280}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {120, 300}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {100, 279}), WritingDirection::leftToRight);
    EXPECT_EQ(directionOfLine(field, {121, 300}), WritingDirection::rightToLeft);
}

TEST(TextSide, AFullCentredOrScrolledLineSaysNothing) {
    EXPECT_EQ(directionOfLine(field, {102, 298}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {170, 230}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {40, 290}), std::nullopt);
    EXPECT_EQ(directionOfLine(field, {110, 420}), std::nullopt);
}

} // namespace
} // namespace quillane::core

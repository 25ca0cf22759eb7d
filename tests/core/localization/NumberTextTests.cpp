// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/localization/NumberText.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace quillane::core {
namespace {

TEST(NumberText, HasWesternDigitsInEveryLanguage) {
    for (const auto language : allLanguages) {
        EXPECT_EQ(numberText(0, language), "0");
        EXPECT_EQ(numberText(250, language), "250");
        EXPECT_EQ(numberText(1000, language), "1,000");
    }
}

TEST(SizeText, TakesTheLargestUnitThatIsFilled) {
    const auto english = [](double bytes) { return sizeText(bytes, AppLanguage::english); };
    EXPECT_EQ(english(0), "0 B");
    EXPECT_EQ(english(999), "999 B");
    EXPECT_EQ(english(999.6), "1 kB");
    EXPECT_EQ(english(1'234), "1.2 kB");
    EXPECT_EQ(english(999'949), "999.9 kB");
    EXPECT_EQ(english(999'950), "1 MB"); // never "1,000 kB"
    EXPECT_EQ(english(3'500'000'000), "3.5 GB");
    EXPECT_EQ(english(2e15), "2,000 TB");
    EXPECT_FALSE(english(std::numeric_limits<double>::max()).empty());
}

TEST(SizeText, KeepsNumberAndUnitTogetherInHebrew) {
    EXPECT_EQ(sizeText(1'500'000, AppLanguage::hebrew), "\u20661.5 MB\u2069");
}

TEST(SizeText, HasArabicUnitsAndWesternDigitsInArabic) {
    EXPECT_EQ(sizeText(1'500'000, AppLanguage::arabic), "1.5 م.ب.");
}

TEST(ProductText, RunsFromLeftToRightAndGroupsNoDigits) {
    EXPECT_EQ(productText(1920, 1080), "\u20661920 × 1080\u2069");
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/StatusBarArtwork.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace quillane {
namespace {

constexpr std::array marks{StatusMark::plain, StatusMark::paused, StatusMark::keepAwake};

/// The total coverage in the rows from `top` up to `bottom`, both as fractions of the height.
long coverage(const TemplateImage& image, double top, double bottom) {
    const auto first = static_cast<int>(image.height * top) * image.width;
    const auto last = static_cast<int>(image.height * bottom) * image.width;
    long sum = 0;
    for (int index = first; index < last; ++index) {
        sum += std::to_integer<long>(image.coverage[static_cast<std::size_t>(index)]);
    }
    return sum;
}

TEST(StatusBarArtwork, HasTheSizeAskedFor) {
    for (const auto mark : marks) {
        const auto image = statusBarArtwork::image(mark, 18, 2);
        EXPECT_EQ(image.width, 36);
        EXPECT_EQ(image.height, 36);
        EXPECT_EQ(image.coverage.size(), 36U * 36U);
    }
}

TEST(StatusBarArtwork, VariantsDiffer) {
    EXPECT_NE(statusBarArtwork::image(StatusMark::plain), statusBarArtwork::image(StatusMark::paused));
    EXPECT_NE(statusBarArtwork::image(StatusMark::plain), statusBarArtwork::image(StatusMark::keepAwake));
    EXPECT_NE(statusBarArtwork::image(StatusMark::paused), statusBarArtwork::image(StatusMark::keepAwake));
}

TEST(StatusBarArtwork, PausedLettersAreDimmed) {
    const auto paused = statusBarArtwork::image(StatusMark::paused);
    const auto awake = statusBarArtwork::image(StatusMark::keepAwake);
    EXPECT_LT(coverage(paused, 0, 0.55), coverage(awake, 0, 0.55) * 6 / 10);
    EXPECT_GT(coverage(paused, 0, 0.55), 0);
}

TEST(StatusBarArtwork, PlainMarkIsAloneAndTheOthersHaveASignBelow) {
    EXPECT_EQ(coverage(statusBarArtwork::image(StatusMark::plain), 0.8, 1), 0);
    EXPECT_GT(coverage(statusBarArtwork::image(StatusMark::paused), 0.7, 1), 0);
    EXPECT_GT(coverage(statusBarArtwork::image(StatusMark::keepAwake), 0.7, 1), 0);
}

TEST(StatusBarArtwork, NothingIsCutAtTheSides) {
    for (const auto mark : marks) {
        const auto image = statusBarArtwork::image(mark);
        const auto width = static_cast<std::size_t>(image.width);
        for (std::size_t row = 0; row < static_cast<std::size_t>(image.height); ++row) {
            EXPECT_LT(std::to_integer<int>(image.coverage[row * width]), 128);
            EXPECT_LT(std::to_integer<int>(image.coverage[row * width + width - 1]), 128);
        }
    }
}

} // namespace
} // namespace quillane

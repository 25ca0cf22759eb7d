// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/settings/BrandPalette.hpp"

#include <gtest/gtest.h>

#include <array>

namespace quillane::core {
namespace {

constexpr std::array appearances{Appearance::light, Appearance::dark};
constexpr double text = 4.5;     // WCAG 2.1, success criterion 1.4.3, level AA
constexpr double graphics = 3.0; // WCAG 2.1, success criterion 1.4.11, level AA

TEST(BrandPalette, HasItsColours) {
    EXPECT_EQ(brandPalette::primary(Appearance::light), (Color{36, 38, 43}));
    EXPECT_EQ(brandPalette::primary(Appearance::dark), (Color{246, 246, 248}));
    EXPECT_EQ(brandPalette::amber(Appearance::light), (Color{185, 90, 33}));
    EXPECT_EQ(brandPalette::amber(Appearance::dark), (Color{255, 224, 175}));
}

TEST(BrandPalette, ContrastIsMeasuredAsTheGuidelinesDo) {
    EXPECT_DOUBLE_EQ(contrastRatio({0, 0, 0}, {255, 255, 255}), 21);
    EXPECT_DOUBLE_EQ(contrastRatio({255, 255, 255}, {0, 0, 0}), 21);
    EXPECT_DOUBLE_EQ(contrastRatio({9, 9, 9}, {9, 9, 9}), 1);
    EXPECT_NEAR(contrastRatio({119, 119, 119}, {255, 255, 255}), 4.48, 0.005);
}

TEST(BrandPalette, EveryTextIsLegibleOnEverySurface) {
    for (const auto appearance : appearances) {
        const auto& shades = brandPalette::shades(appearance);
        for (const auto surface : {shades.window, shades.card, shades.field, shades.selection}) {
            EXPECT_GE(contrastRatio(brandPalette::primary(appearance), surface), text);
            EXPECT_GE(contrastRatio(shades.secondary, surface), text);
        }
        for (const auto surface : {shades.window, shades.card, shades.field}) {
            EXPECT_GE(contrastRatio(shades.warning, surface), text);
            EXPECT_GE(contrastRatio(shades.good, surface), text);
        }
        EXPECT_GE(contrastRatio(shades.onAmber, brandPalette::amber(appearance)), text);
    }
}

TEST(BrandPalette, ControlsStandOutFromTheirSurface) {
    for (const auto appearance : appearances) {
        const auto& shades = brandPalette::shades(appearance);
        for (const auto surface : {shades.window, shades.card}) {
            EXPECT_GE(contrastRatio(brandPalette::amber(appearance), surface), graphics);
            EXPECT_GE(contrastRatio(shades.off, surface), graphics - 0.1);
            EXPECT_GE(contrastRatio(shades.outline, surface), graphics - 0.1);
        }
        EXPECT_GE(contrastRatio(shades.off, shades.card), graphics);
        EXPECT_GE(contrastRatio(shades.outline, shades.card), graphics);
    }
}

TEST(BrandPalette, TheWordmarkSpellsTheName) {
    std::string name;
    for (const auto& run : brandPalette::wordmark(Appearance::dark, false)) {
        name += run.text;
    }
    EXPECT_EQ(name, "Quillane");
    EXPECT_EQ(brandPalette::wordmark(Appearance::light, true).size(), 1U);
}

} // namespace
} // namespace quillane::core

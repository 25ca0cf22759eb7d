// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/permissions/PermissionGuidePlacement.hpp"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

namespace quillane::core {

static void PrintTo(const Rect& rect, std::ostream* out) {
    *out << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height;
}

namespace {

using permissionGuidePlacement::frame;
constexpr Size card{420, 190};
constexpr Rect screen{0, 0, 1440, 900};

TEST(PermissionGuidePlacement, WithoutAWindowItIsAtTheBottomInTheMiddle) {
    EXPECT_EQ(frame(std::nullopt, screen, card), (Rect{510, 12, 420, 190}));
}

TEST(PermissionGuidePlacement, GoesBelowTheWindowRightAligned) {
    EXPECT_EQ(frame(Rect{300, 300, 700, 500}, screen, card), (Rect{580, 98, 420, 190}));
}

TEST(PermissionGuidePlacement, FitsBelowToThePoint) {
    EXPECT_EQ(frame(Rect{300, 214, 700, 500}, screen, card), (Rect{580, 12, 420, 190}));
    EXPECT_EQ(frame(Rect{300, 213, 700, 500}, screen, card), (Rect{580, 225, 420, 190}));
}

TEST(PermissionGuidePlacement, BesideAWindowAtTheBottomOfTheScreen) {
    EXPECT_EQ(frame(Rect{100, 0, 700, 500}, screen, card), (Rect{812, 12, 420, 190}));
    EXPECT_EQ(frame(Rect{700, 0, 700, 500}, screen, card), (Rect{268, 12, 420, 190}));
}

TEST(PermissionGuidePlacement, InsideAMaximisedWindow) {
    EXPECT_EQ(frame(screen, screen, card), (Rect{1008, 12, 420, 190}));
    EXPECT_EQ(frame(Rect{0, 40, 1440, 860}, Rect{0, 40, 1440, 860}, card), (Rect{1008, 52, 420, 190}));
}

TEST(PermissionGuidePlacement, ShrinksToASmallScreen) {
    EXPECT_EQ(frame(std::nullopt, Rect{0, 0, 320, 160}, card), (Rect{12, 12, 296, 136}));
}

TEST(PermissionGuidePlacement, AScreenBeyondTheMainOneKeepsTheCard) {
    EXPECT_EQ(frame(Rect{-1200, 200, 700, 600}, Rect{-1440, -100, 1440, 900}, card), (Rect{-920, -2, 420, 190}));
}

TEST(PermissionGuidePlacement, StaysInTheAreaAndOffTheWindowWhereverASideHasRoom) {
    std::mt19937 random(42);
    const auto between = [&](double minimum, double maximum) {
        return std::uniform_real_distribution(minimum, maximum)(random);
    };
    int beside = 0;
    for (int round = 0; round < 20000; ++round) {
        const Rect visible{between(-3000, 3000), between(-3000, 3000), between(30, 4000), between(30, 3000)};
        const auto area = visible.insetBy(permissionGuidePlacement::margin);
        const Rect window{visible.x + between(-300, visible.width), visible.y + between(-300, visible.height),
                          between(400, 2500), between(300, 2000)};
        const auto result = frame(window, visible, card);
        constexpr double dust = 1e-6;
        ASSERT_GE(result.minX(), area.minX() - dust);
        ASSERT_GE(result.minY(), area.minY() - dust);
        ASSERT_LE(result.maxX(), area.maxX() + dust);
        ASSERT_LE(result.maxY(), area.maxY() + dust);
        ASSERT_LE(result.width, card.width);
        ASSERT_LE(result.height, card.height);
        // A side has room if the card fits where the rule would put it.
        const bool below = window.minY() - 12 - result.height >= area.minY() && window.minY() - 12 <= area.maxY();
        const bool right = window.maxX() + 12 + result.width <= area.maxX() && window.maxX() + 12 >= area.minX();
        const bool left = window.minX() - 12 - result.width >= area.minX() && window.minX() - 12 <= area.maxX();
        if (below || right || left) {
            ++beside;
            ASSERT_FALSE(result.overlaps(window))
                << ::testing::PrintToString(window) << " on " << ::testing::PrintToString(visible) << " gives "
                << ::testing::PrintToString(result);
        }
    }
    EXPECT_GT(beside, 5000);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Geometry.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

constexpr Rect rect{10, 20, 300, 40};

TEST(Geometry, EdgesOfARectangle) {
    EXPECT_EQ(rect.minX(), 10);
    EXPECT_EQ(rect.midX(), 160);
    EXPECT_EQ(rect.maxX(), 310);
    EXPECT_EQ(rect.minY(), 20);
    EXPECT_EQ(rect.maxY(), 60);
}

TEST(Geometry, InsetRectanglesShrinkOnEverySide) {
    EXPECT_EQ(rect.insetBy(0), rect);
    EXPECT_EQ(rect.insetBy(5), (Rect{15, 25, 290, 30}));
    EXPECT_EQ(rect.insetBy(20), (Rect{30, 40, 260, 0}));
    EXPECT_EQ(rect.insetBy(30), (Rect{40, 50, 240, 0}));
    EXPECT_EQ((Rect{0, 0, 10, 300}.insetBy(6)), (Rect{6, 6, 0, 288}));
}

TEST(Geometry, RectanglesThatShareAnAreaOverlap) {
    EXPECT_TRUE(rect.overlaps(rect));
    EXPECT_TRUE(rect.overlaps({309, 59, 100, 100}));
    EXPECT_TRUE(rect.overlaps({0, 0, 11, 21}));
    EXPECT_TRUE(rect.overlaps({100, 30, 1, 1}));
}

TEST(Geometry, RectanglesThatShareAnEdgeDoNotOverlap) {
    EXPECT_FALSE(rect.overlaps({310, 20, 100, 40}));
    EXPECT_FALSE(rect.overlaps({0, 20, 10, 40}));
    EXPECT_FALSE(rect.overlaps({10, 60, 300, 10}));
    EXPECT_FALSE(rect.overlaps({10, 0, 300, 20}));
}

TEST(Geometry, BothWaysToMeasureLeadThereAndBack) {
    const ScreenRect fromTop{10, 20, 300, 40};
    EXPECT_EQ(fromTopLeft(fromTop, 800), (Rect{10, 740, 300, 40}));
    EXPECT_EQ(fromBottomLeft({10, 740, 300, 40}, 800), fromTop);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/AreaSelection.hpp"

#include <gtest/gtest.h>

#include <random>

namespace quillane::core {

void PrintTo(const PixelRect& rect, std::ostream* out) {
    *out << rect.width << 'x' << rect.height << '+' << rect.x << '+' << rect.y;
}

namespace {

const std::vector<PixelRect> one{{0, 0, 1280, 800}};

/// A small screen left of a large one and lower than it.
const std::vector<PixelRect> two{{-640, 100, 640, 480}, {0, 0, 1280, 800}};

AreaSelection drag(const std::vector<PixelRect>& screens, PixelPoint from, PixelPoint to) {
    AreaSelection selection(screens);
    selection.press(from);
    selection.pointTo(to);
    return selection;
}

TEST(AreaSelection, NothingIsSelectedBeforeADrag) {
    AreaSelection selection(one);
    EXPECT_FALSE(selection.area());
    selection.pointTo({5, 6});
    EXPECT_FALSE(selection.area());
    EXPECT_EQ(selection.corner(), (PixelPoint{5, 6}));
}

TEST(AreaSelection, TheBandHoldsBothPixels) {
    EXPECT_EQ(drag(one, {10, 10}, {109, 59}).area(), (PixelRect{10, 10, 100, 50}));
}

TEST(AreaSelection, TheBandIsTheSameWhicheverCornerItBeganIn) {
    const PixelRect area{10, 20, 91, 41};
    for (const auto& [from, to] : std::vector<std::pair<PixelPoint, PixelPoint>>{
             {{10, 20}, {100, 60}}, {{100, 60}, {10, 20}}, {{10, 60}, {100, 20}}, {{100, 20}, {10, 60}}}) {
        EXPECT_EQ(drag(one, from, to).area(), area);
    }
}

TEST(AreaSelection, AWholeScreenCanBeSelected) {
    EXPECT_EQ(drag(one, {0, 0}, {1279, 799}).area(), one.front());
}

TEST(AreaSelection, ThePointerIsKeptWithinTheScreens) {
    EXPECT_EQ(drag(one, {1200, 700}, {5000, -3}).area(), (PixelRect{1200, 0, 80, 701}));
    EXPECT_EQ(drag(two, {-10, 110}, {-9000, 9000}).area(), (PixelRect{-640, 110, 631, 690}));
}

TEST(AreaSelection, AClickSelectsNothing) {
    auto selection = drag(one, {10, 10}, {12, 12});
    EXPECT_FALSE(selection.area());
    EXPECT_FALSE(selection.release());
}

TEST(AreaSelection, ALineOfOnePixelIsASelection) {
    auto selection = drag(one, {10, 10}, {13, 10});
    EXPECT_TRUE(selection.release());
    EXPECT_EQ(selection.area(), (PixelRect{10, 10, 4, 1}));
}

TEST(AreaSelection, ADragThatComesBackStaysADrag) {
    auto selection = drag(one, {10, 10}, {90, 90});
    selection.pointTo({10, 10});
    EXPECT_EQ(selection.area(), (PixelRect{10, 10, 1, 1}));
}

TEST(AreaSelection, ANewPressGivesUpTheOldArea) {
    auto selection = drag(one, {10, 10}, {90, 90});
    selection.release();
    selection.press({200, 200});
    EXPECT_FALSE(selection.area());
}

TEST(AreaSelection, MovingKeepsTheSize) {
    auto selection = drag(one, {10, 10}, {59, 39});
    selection.setMoving(true);
    selection.pointTo({159, 89});
    EXPECT_EQ(selection.area(), (PixelRect{110, 60, 50, 30}));
    selection.setMoving(false);
    selection.pointTo({169, 99});
    EXPECT_EQ(selection.area(), (PixelRect{110, 60, 60, 40}));
}

TEST(AreaSelection, MovingStopsAtTheEdge) {
    auto selection = drag(one, {1200, 700}, {1249, 749});
    selection.setMoving(true);
    selection.pointTo({1279, 799});
    selection.pointTo({5000, 5000});
    EXPECT_EQ(selection.area(), (PixelRect{1230, 750, 50, 50}));
    selection.pointTo({0, 0});
    EXPECT_EQ(selection.area(), (PixelRect{0, 0, 50, 50}));
}

TEST(AreaSelection, LockedOnlyOneSideFollows) {
    auto selection = drag(one, {10, 10}, {59, 39});
    selection.setLocked(true);
    selection.pointTo({109, 45});
    EXPECT_EQ(selection.area(), (PixelRect{10, 10, 100, 30}));
    selection.pointTo({61, 200});
    EXPECT_EQ(selection.area(), (PixelRect{10, 10, 50, 191}));
    selection.setLocked(false);
    selection.pointTo({61, 201});
    EXPECT_EQ(selection.area(), (PixelRect{10, 10, 52, 192}));
}

TEST(AreaSelection, KeysBeginInTheMiddleOfTheScreenUnderThePointer) {
    AreaSelection selection(two);
    selection.pointTo({-5, 200});
    selection.move(10, 0);
    EXPECT_EQ(selection.area(), (PixelRect{-480, 220, 320, 240}));
    AreaSelection other(two);
    other.resize(10, 0);
    EXPECT_EQ(other.area(), (PixelRect{320, 200, 640, 400}));
}

TEST(AreaSelection, KeysMoveAndResize) {
    AreaSelection selection(one);
    selection.move(0, 0);
    selection.move(10, -10);
    EXPECT_EQ(selection.area(), (PixelRect{330, 190, 640, 400}));
    selection.resize(-40, 20);
    EXPECT_EQ(selection.area(), (PixelRect{330, 190, 600, 420}));
    selection.resize(-9000, -9000);
    EXPECT_EQ(selection.area(), (PixelRect{330, 190, 1, 1}));
    selection.resize(9000, 9000);
    EXPECT_EQ(selection.area(), (PixelRect{330, 190, 950, 610}));
}

TEST(AreaSelection, KeysGoOnFromADragInWhicheverDirectionItWent) {
    auto selection = drag(one, {100, 100}, {51, 71});
    selection.release();
    selection.resize(10, 0);
    EXPECT_EQ(selection.area(), (PixelRect{51, 71, 60, 30}));
}

TEST(AreaSelection, AnyInputStaysWithinTheScreens) {
    std::mt19937 random(7);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    for (int round = 0; round < 200; ++round) {
        AreaSelection selection(two);
        for (int step = 0; step < 60; ++step) {
            const PixelPoint point{number(-900, 1500), number(-200, 1000)};
            switch (number(0, 6)) {
            case 0:
                selection.press(point);
                break;
            case 1:
                selection.release();
                break;
            case 2:
                selection.setMoving(number(0, 1) == 1);
                break;
            case 3:
                selection.setLocked(number(0, 1) == 1);
                break;
            case 4:
                selection.move(number(-300, 300), number(-300, 300));
                break;
            case 5:
                selection.resize(number(-300, 300), number(-300, 300));
                break;
            default:
                selection.pointTo(point);
            }
            if (const auto area = selection.area()) {
                ASSERT_FALSE(area->isEmpty());
                ASSERT_EQ(intersection(*area, selection.bounds()), *area);
                ASSERT_TRUE(area->contains(selection.corner()));
            }
        }
    }
}

TEST(ScreenAt, IsTheOneThatHoldsThePointOrTheNearest) {
    EXPECT_EQ(screenAt(two, {-1, 100}), 0U);
    EXPECT_EQ(screenAt(two, {0, 100}), 1U);
    EXPECT_EQ(screenAt(two, {-600, 0}), 0U);
    EXPECT_EQ(screenAt(two, {-20, 20}), 1U);
}

TEST(Intersection, OfAreasApartIsEmpty) {
    EXPECT_TRUE(intersection({0, 0, 10, 10}, {10, 0, 10, 10}).isEmpty());
    EXPECT_EQ(intersection({0, 0, 10, 10}, {5, -5, 10, 10}), (PixelRect{5, 0, 5, 5}));
}

constexpr PixelSize label{80, 24};
constexpr PixelRect screen{0, 0, 1280, 800};

TEST(SizeLabelPlace, IsOutsideAtTheCornerThatMoves) {
    const PixelRect area{300, 300, 200, 100};
    EXPECT_EQ(sizeLabelPlace(area, {499, 399}, label, screen, 6), (PixelRect{420, 406, 80, 24}));
    EXPECT_EQ(sizeLabelPlace(area, {300, 399}, label, screen, 6), (PixelRect{300, 406, 80, 24}));
    EXPECT_EQ(sizeLabelPlace(area, {499, 300}, label, screen, 6), (PixelRect{420, 270, 80, 24}));
    EXPECT_EQ(sizeLabelPlace(area, {300, 300}, label, screen, 6), (PixelRect{300, 270, 80, 24}));
}

TEST(SizeLabelPlace, IsInsideWhereTheScreenEnds) {
    EXPECT_EQ(sizeLabelPlace(screen, {1279, 799}, label, screen, 6), (PixelRect{1200, 770, 80, 24}));
    EXPECT_EQ(sizeLabelPlace(screen, {0, 0}, label, screen, 6), (PixelRect{0, 6, 80, 24}));
}

TEST(SizeLabelPlace, IsAlwaysOnTheScreen) {
    std::mt19937 random(3);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    for (int i = 0; i < 5'000; ++i) {
        const auto drawn = drag({screen}, {number(0, 1279), number(0, 799)}, {number(0, 1279), number(0, 799)});
        if (const auto area = drawn.area()) {
            const auto place = sizeLabelPlace(*area, drawn.corner(), label, screen, 6);
            ASSERT_EQ(intersection(place, screen), place) << i;
        }
    }
}

TEST(SizeLabelPlace, ALabelLargerThanTheScreenBeginsAtItsEdge) {
    EXPECT_EQ(sizeLabelPlace({0, 0, 20, 20}, {19, 19}, {500, 40}, {0, 0, 200, 30}, 6), (PixelRect{0, 0, 500, 40}));
}

} // namespace
} // namespace quillane::core

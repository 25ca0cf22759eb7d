// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ChordSign.hpp"

#include "core/localization/Texts.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillane::core {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(ChordSign, ADirectionIsAnArrowThatPointsThereWithAParagraphSign) {
    const auto toTheLeft = chordSign({texts::appliedDirection("RTL", "Chrome"), WritingDirection::rightToLeft});
    EXPECT_THAT(toTheLeft.symbols, ElementsAre("arrow.left", "paragraphsign"));
    EXPECT_EQ(toTheLeft.text, std::nullopt);
    EXPECT_EQ(toTheLeft.announcement.rendered(AppLanguage::english), "Applied RTL in Chrome");
    const auto toTheRight = chordSign({texts::appliedDirection("LTR", "Chrome"), WritingDirection::leftToRight});
    EXPECT_THAT(toTheRight.symbols, ElementsAre("paragraphsign", "arrow.right"));
}

TEST(ChordSign, ASourceIsNamedAndAFailureIsExplained) {
    const auto source = chordSign({texts::keyboardLanguage("Hebrew"), SelectedSource{"Hebrew"}});
    EXPECT_EQ(source.text->rendered(AppLanguage::arabic), "Hebrew");
    EXPECT_EQ(source.announcement.rendered(AppLanguage::english), "Keyboard language: Hebrew");
    const auto failure = chordSign(texts::closeOpenMenu);
    EXPECT_EQ(failure.text, LocalizedText(texts::closeOpenMenu));
    EXPECT_EQ(failure.announcement, LocalizedText(texts::closeOpenMenu));
    EXPECT_NE(failure.symbols, source.symbols);
}

TEST(ChordSign, IsShownAsLongAsItTakesToRead) {
    const auto shown = [](const std::string& text) {
        return timeShown({.symbols = {}, .text = LocalizedText(text), .announcement = {}}, AppLanguage::english);
    };
    EXPECT_EQ(timeShown({}, AppLanguage::english), 600ms);
    EXPECT_EQ(shown(""), 600ms);
    EXPECT_EQ(shown("Hebrew"), 860ms);
    EXPECT_EQ(shown("עברית!"), 860ms); // characters, not bytes
    EXPECT_EQ(shown(std::string(60, 'a')), 4100ms);
    EXPECT_EQ(shown(std::string(1000, 'a')), 8s);
}

TEST(ChordSign, EveryFailureIsShownLongerThanASign) {
    for (const auto& text : {LocalizedText(texts::closeOpenMenu), LocalizedText(texts::directionNotApplied),
                             LocalizedText(texts::enableTwoKeyboardLanguages)}) {
        for (const auto language : allLanguages) {
            EXPECT_GT(timeShown(chordSign(text), language), 1s);
        }
    }
}

constexpr ScreenRect screen{0, 0, 1000, 800};
constexpr Size size{100, 40};

TEST(ChordSignPlacement, IsBelowTheCursorAndCentredOnIt) {
    EXPECT_EQ(chordSignPlacement::frame({500, 300, 2, 20}, screen, size), (ScreenRect{451, 326, 100, 40}));
    EXPECT_EQ(chordSignPlacement::frame({500, 300, 0, 0}, screen, size), (ScreenRect{450, 306, 100, 40}));
}

TEST(ChordSignPlacement, IsAboveTheCursorWhereThereIsNoRoomBelow) {
    EXPECT_EQ(chordSignPlacement::frame({500, 760, 2, 20}, screen, size), (ScreenRect{451, 714, 100, 40}));
}

TEST(ChordSignPlacement, StaysOnItsScreen) {
    EXPECT_EQ(chordSignPlacement::frame({0, 300, 2, 20}, screen, size).x, 6);
    EXPECT_EQ(chordSignPlacement::frame({999, 300, 2, 20}, screen, size).x, 894);
    EXPECT_EQ(chordSignPlacement::frame({500, -50, 2, 20}, screen, size).y, 6);
    EXPECT_EQ(chordSignPlacement::frame({500, 900, 2, 20}, screen, size).y, 754);
    constexpr ScreenRect left{-1000, 100, 1000, 800};
    EXPECT_EQ(chordSignPlacement::frame({-500, 300, 2, 20}, left, size), (ScreenRect{-549, 326, 100, 40}));
    EXPECT_EQ(chordSignPlacement::frame({20, 10, 2, 20}, {0, 0, 60, 30}, size), (ScreenRect{6, 6, 100, 40}));
}

} // namespace
} // namespace quillane::core

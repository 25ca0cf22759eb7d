// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/ClipboardPanelKeys.hpp"
#include "core/clipboard/ClipboardPanelPlacement.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace quillane::core {
namespace {

namespace keys = clipboardPanelKeys;
using keys::Choice;

constexpr auto mac = Desktop::macOS;

TEST(ClipboardPanelKeys, ReturnChoosesInThreeWays) {
    for (const auto enter : std::array<KeyCode, 2>{36, 76}) {
        EXPECT_EQ(keys::action(enter, 0, mac), keys::Action(keys::ChooseSelected{Choice::paste}));
        EXPECT_EQ(keys::action(enter, flags::option, mac), keys::Action(keys::ChooseSelected{Choice::copyOnly}));
        EXPECT_EQ(keys::action(enter, flags::shift, mac), keys::Action(keys::ChooseSelected{Choice::plainPaste}));
        EXPECT_EQ(keys::action(enter, flags::shift | flags::option, mac), std::nullopt);
        EXPECT_EQ(keys::action(enter, flags::command, mac), std::nullopt);
    }
}

TEST(ClipboardPanelKeys, CommandAndADigitPastesByNumber) {
    constexpr std::array<KeyCode, 9> digits{18, 19, 20, 21, 23, 22, 26, 28, 25};
    for (std::size_t i = 0; i < digits.size(); ++i) {
        EXPECT_EQ(keys::action(digits[i], flags::command | flags::leftCommand, mac), keys::Action(keys::PasteAt{i}));
        EXPECT_EQ(keys::action(digits[i], 0, mac), std::nullopt);
    }
    EXPECT_EQ(keys::action(29, flags::command, mac), std::nullopt); // 0
}

TEST(ClipboardPanelKeys, SidesAndLocksDoNotCount) {
    constexpr auto noise = flags::capsLock | flags::secondaryFn | flags::rightShift;
    EXPECT_EQ(keys::action(126, noise, mac), keys::Action(keys::Move{-1}));
    EXPECT_EQ(keys::action(125, noise, mac), keys::Action(keys::Move{1}));
    EXPECT_EQ(keys::action(53, noise, mac), keys::Action(keys::Close{}));
    EXPECT_EQ(keys::action(51, noise | flags::command, mac), keys::Action(keys::RemoveSelected{}));
}

TEST(ClipboardPanelKeys, EntryIsDeletedByTheKeysOfTheDesktop) {
    constexpr KeyCode backspace = 51;
    constexpr KeyCode forwardDelete = 117;
    const keys::Action remove = keys::RemoveSelected{};
    EXPECT_EQ(keys::action(backspace, flags::command, Desktop::macOS), remove);
    EXPECT_EQ(keys::action(forwardDelete, flags::shift, Desktop::macOS), std::nullopt);
    EXPECT_EQ(keys::action(forwardDelete, flags::shift, Desktop::linuxDesktop), remove);
    EXPECT_EQ(keys::action(backspace, flags::command, Desktop::linuxDesktop), std::nullopt); // a word of the search
    for (const auto desktop : {Desktop::macOS, Desktop::linuxDesktop}) {
        EXPECT_EQ(keys::action(backspace, 0, desktop), std::nullopt);
        EXPECT_EQ(keys::action(forwardDelete, 0, desktop), std::nullopt);
        EXPECT_EQ(keys::action(forwardDelete, flags::shift | flags::command, desktop), std::nullopt);
    }
}

TEST(ClipboardPanelKeys, PasteKeyIsShownAsTheDesktopNamesIt) {
    EXPECT_EQ(keys::pasteKey(0, Desktop::macOS), "⌘1");
    EXPECT_EQ(keys::pasteKey(8, Desktop::linuxDesktop), "Ctrl+9");
}

constexpr Rect screen{0, 40, 1440, 820};
constexpr Size panel{420, 520};

TEST(ClipboardPanelPlacement, OpensBelowThePointerAndALittleToItsLeft) {
    EXPECT_EQ(clipboardPanelPlacement::frame(Point{700, 700}, screen, panel), (Rect{664, 168, 420, 520}));
}

TEST(ClipboardPanelPlacement, OpensInTheMiddleWithoutAPointer) {
    EXPECT_EQ(clipboardPanelPlacement::frame(std::nullopt, screen, panel), (Rect{510, 190, 420, 520}));
}

TEST(ClipboardPanelPlacement, StaysOnTheScreenInItsCorners) {
    EXPECT_EQ(clipboardPanelPlacement::frame(Point{1439, 41}, screen, panel), (Rect{1012, 48, 420, 520}));
    EXPECT_EQ(clipboardPanelPlacement::frame(Point{0, 860}, screen, panel), (Rect{8, 328, 420, 520}));
}

TEST(ClipboardPanelPlacement, ShrinksToASmallScreen) {
    EXPECT_EQ(clipboardPanelPlacement::frame(Point{50, 50}, {0, 0, 300, 200}, panel), (Rect{8, 8, 284, 184}));
}

TEST(ClipboardPanelPlacement, AlwaysKeepsTheMargin) {
    std::mt19937 random(20);
    const auto number = [&](double low, double high) { return std::uniform_real_distribution(low, high)(random); };
    for (int i = 0; i < 5'000; ++i) {
        const Rect area{number(-3'000, 3'000), number(-3'000, 3'000), number(20, 3'000), number(20, 2'000)};
        const Point pointer{number(-4'000, 4'000), number(-4'000, 4'000)};
        const auto frame = clipboardPanelPlacement::frame(pointer, area, {number(1, 2'500), number(1, 2'500)});
        const auto inner = area.insetBy(clipboardPanelPlacement::margin);
        EXPECT_GE(frame.minX(), inner.minX() - 1e-6);
        EXPECT_GE(frame.minY(), inner.minY() - 1e-6);
        EXPECT_LE(frame.maxX(), inner.maxX() + 1e-6);
        EXPECT_LE(frame.maxY(), inner.maxY() + 1e-6);
    }
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/KeyboardLayout.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace quillane::core {
namespace {

using ::testing::Pair;
using ::testing::UnorderedElementsAre;
using Output = KeyboardLayout::Output;

constexpr KeyStroke accent{.keyCode = 33};
constexpr KeyStroke letter{.keyCode = 14};

std::u32string composesNothing(const KeyStroke& /*dead*/, const KeyStroke& /*next*/) {
    return {};
}

/// What a layout holds whose key `letter` types the text.
std::u32string heldFor(const std::u32string& text) {
    const auto layout = KeyboardLayout::read(
        [&](const KeyStroke& stroke) { return Output{stroke == letter ? text : std::u32string()}; }, composesNothing);
    const auto found = layout.outputs.find(letter);
    return found == layout.outputs.end() ? std::u32string() : found->second.text;
}

TEST(KeyboardLayout, TypingKeysAreThoseThatTypeTextInAscendingOrder) {
    // Left out of the first 51 are Return (36) and Tab (48); 93 and 94 are on Japanese keyboards.
    std::vector<KeyCode> expected;
    for (KeyCode key = 0; key <= 50; ++key) {
        if (key != 36 && key != 48) {
            expected.push_back(key);
        }
    }
    expected.insert(expected.end(), {93, 94});
    EXPECT_TRUE(std::ranges::equal(typingKeys(), expected));
}

TEST(KeyboardLayout, ReadingAsksForEveryKeyWithEveryModifierOnce) {
    std::vector<KeyStroke> asked;
    const auto layout = KeyboardLayout::read(
        [&](const KeyStroke& stroke) {
            asked.push_back(stroke);
            return Output{};
        },
        composesNothing);
    EXPECT_EQ(asked.size(), typingKeys().size() * 8);
    EXPECT_EQ(std::set(asked.begin(), asked.end()).size(), asked.size());
    EXPECT_TRUE(layout.outputs.empty());
}

TEST(KeyboardLayout, OnlyStrokesWithTextAreKept) {
    const auto layout = KeyboardLayout::read(
        [](const KeyStroke& stroke) {
            return stroke == letter ? Output{U"e"} : stroke == accent ? Output{U"´", true} : Output{};
        },
        composesNothing);
    EXPECT_THAT(layout.outputs,
                UnorderedElementsAre(Pair(letter, Output{U"e", false}), Pair(accent, Output{U"´", true})));
    EXPECT_TRUE(layout.compositions.empty());
}

TEST(KeyboardLayout, IsolatedLamAndAlefBecomeTheirLetters) {
    EXPECT_EQ(heldFor(U"\ufef5"), U"\u0644\u0622");
    EXPECT_EQ(heldFor(U"\ufef7"), U"\u0644\u0623");
    EXPECT_EQ(heldFor(U"\ufef9"), U"\u0644\u0625");
    EXPECT_EQ(heldFor(U"\ufefb"), U"\u0644\u0627");
    EXPECT_EQ(heldFor(U"\ufefc"), U"\ufefc"); // the final form is left as it is
    EXPECT_EQ(heldFor(U"\ufefb\u0645"), U"\ufefb\u0645");
}

TEST(KeyboardLayout, DeadKeysComposeWithStrokesOfTheSameCapsLock) {
    std::vector<std::pair<KeyStroke, KeyStroke>> asked;
    const auto layout = KeyboardLayout::read(
        [](const KeyStroke& stroke) {
            const bool isPlain = !stroke.shift && !stroke.option;
            return isPlain && stroke.keyCode == letter.keyCode   ? Output{stroke.capsLock ? U"E" : U"e"}
                   : isPlain && stroke.keyCode == accent.keyCode ? Output{U"´", true}
                                                                 : Output{};
        },
        [&](const KeyStroke& dead, const KeyStroke& next) {
            asked.emplace_back(dead, next);
            return dead == accent && next == letter ? std::u32string(U"é") : std::u32string();
        });
    auto accentWithCapsLock = accent;
    auto letterWithCapsLock = letter;
    accentWithCapsLock.capsLock = letterWithCapsLock.capsLock = true;
    EXPECT_THAT(asked, UnorderedElementsAre(Pair(accent, accent), Pair(accent, letter),
                                            Pair(accentWithCapsLock, accentWithCapsLock),
                                            Pair(accentWithCapsLock, letterWithCapsLock)));
    EXPECT_THAT(layout.compositions, UnorderedElementsAre(Pair(Pair(accent, letter), U"é")));
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypingIndex.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr KeyStroke plain{.keyCode = 14};
constexpr KeyStroke shifted{.keyCode = 14, .shift = true};
constexpr KeyStroke withOption{.keyCode = 14, .option = true};
constexpr KeyStroke withCapsLock{.keyCode = 14, .capsLock = true};
constexpr KeyStroke accent{.keyCode = 33};

/// The strokes that are chosen for "x" of those that type it.
std::vector<KeyStroke> chosen(const KeyboardLayout& layout, bool capsLock = false) {
    return TypingIndex(layout, capsLock).longest(U"x").second.strokes;
}

KeyboardLayout typingX(std::initializer_list<KeyStroke> strokes) {
    KeyboardLayout layout;
    for (const auto& stroke : strokes) {
        layout.outputs[stroke] = {U"x", false};
    }
    return layout;
}

TEST(TypingIndex, CapsLockStaysAsItIs) {
    const auto layout = typingX({plain, withCapsLock});
    EXPECT_THAT(chosen(layout), ElementsAre(plain));
    EXPECT_THAT(chosen(layout, true), ElementsAre(withCapsLock));
    EXPECT_THAT(chosen(typingX({plain}), true), ElementsAre(plain)); // the only way
    auto composed = typingX({withCapsLock});
    composed.compositions[{accent, plain}] = U"x";
    EXPECT_THAT(chosen(composed), ElementsAre(accent, plain)) << "matters more than the number of strokes";
}

TEST(TypingIndex, OneStrokeIsSimplerThanTwo) {
    auto layout = typingX({{.keyCode = 14, .shift = true, .option = true}});
    layout.compositions[{accent, plain}] = U"x";
    EXPECT_THAT(chosen(layout), ElementsAre(KeyStroke{.keyCode = 14, .shift = true, .option = true}));
}

TEST(TypingIndex, KeyThatTypesIsSimplerThanAnAccentThatWaits) {
    KeyboardLayout layout;
    layout.outputs[plain] = {U"x", true};
    layout.outputs[withOption] = {U"x", false};
    const auto [length, typing] = TypingIndex(layout, false).longest(U"x");
    EXPECT_THAT(typing.strokes, ElementsAre(withOption));
    EXPECT_FALSE(typing.endsWithDeadKey);
}

TEST(TypingIndex, FewModifiersAreSimplerAndShiftSimplerThanOption) {
    EXPECT_THAT(chosen(typingX({shifted, withOption})), ElementsAre(shifted));
    EXPECT_THAT(chosen(typingX({{.keyCode = 13, .shift = true}, {.keyCode = 14}})), ElementsAre(plain));
    EXPECT_THAT(chosen(typingX({{.keyCode = 13, .option = true}, {.keyCode = 14}})), ElementsAre(plain));
}

TEST(TypingIndex, FirstKeyIsChosenAmongEquals) {
    EXPECT_THAT(chosen(typingX({{.keyCode = 15}, plain})), ElementsAre(plain));
}

TEST(TypingIndex, LongestBeginningIsFound) {
    KeyboardLayout layout;
    layout.outputs[plain] = {U"ab", false};
    layout.outputs[shifted] = {U"a", false};
    const TypingIndex index(layout, false);
    EXPECT_EQ(index.longest(U"abc").first, 2U);
    EXPECT_EQ(index.longest(U"ac").first, 1U);
    EXPECT_EQ(index.longest(U"a").first, 1U);
    EXPECT_EQ(index.longest(U"c").first, 0U);
    EXPECT_THAT(index.longest(U"c").second.strokes, IsEmpty());
    EXPECT_EQ(index.longest(U"").first, 0U);
    EXPECT_TRUE(index.types(U"ab"));
    EXPECT_FALSE(index.types(U"abc"));
}

TEST(TypingIndex, DeadKeyEndsWithItsAccentAndACompositionDoesNot) {
    KeyboardLayout layout;
    layout.outputs[accent] = {U"´", true};
    layout.compositions[{accent, plain}] = U"é";
    const TypingIndex index(layout, false);
    EXPECT_TRUE(index.longest(U"´").second.endsWithDeadKey);
    EXPECT_FALSE(index.longest(U"é").second.endsWithDeadKey);
    EXPECT_THAT(index.longest(U"é").second.strokes, ElementsAre(accent, plain));
}

TEST(TypingIndex, CharactersThatSetTheDirectionAreNotTyped) {
    KeyboardLayout layout;
    layout.outputs[plain] = {U"\u200f", false};
    layout.outputs[shifted] = {U"a\u200e", false};
    const TypingIndex index(layout, false);
    EXPECT_FALSE(index.types(U"\u200f"));
    EXPECT_FALSE(index.types(U"a\u200e"));
}

TEST(TypingIndex, IsolatedLamAndAlefAreTypedAsTheirLetters) {
    KeyboardLayout layout;
    layout.outputs[plain] = {U"\u0644\u0627", false};
    const TypingIndex index(layout, false);
    EXPECT_THAT(index.longest(U"\ufefb").second.strokes, ElementsAre(plain));
    EXPECT_FALSE(index.types(U"\ufef5")); // whose letters no key types
}

} // namespace
} // namespace quillane::core

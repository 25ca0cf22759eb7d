// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ShiftEnglish.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillane::core {
namespace {

constexpr shiftEnglish::Conditions met{.shift = true, .shortcutModifier = false, .rtlSource = true, .editable = true};

TEST(ShiftEnglish, EachLetterKeyTypesItsLowerCaseLetter) {
    // Key codes 0 to 46 in order; a space is a key that is not a letter.
    const std::u16string letters = u"asdfhgzxcv bqweryt             ou ip lj k    nm";
    ASSERT_EQ(letters.size(), 47U);
    for (std::size_t keyCode = 0; keyCode < letters.size(); ++keyCode) {
        const auto expected = letters[keyCode] == u' ' ? std::nullopt : std::optional(letters[keyCode]);
        EXPECT_EQ(shiftEnglish::character(static_cast<KeyCode>(keyCode), met), expected) << keyCode;
    }
}

TEST(ShiftEnglish, NoOtherKeyTypesALetter) {
    for (unsigned keyCode = 47; keyCode <= 0xFFFF; ++keyCode) {
        ASSERT_EQ(shiftEnglish::character(static_cast<KeyCode>(keyCode), met), std::nullopt) << keyCode;
    }
}

TEST(ShiftEnglish, EveryConditionIsNeeded) {
    auto conditions = met;
    conditions.shift = false;
    EXPECT_EQ(shiftEnglish::character(0, conditions), std::nullopt);
    conditions = met;
    conditions.shortcutModifier = true;
    EXPECT_EQ(shiftEnglish::character(0, conditions), std::nullopt);
    conditions = met;
    conditions.rtlSource = false;
    EXPECT_EQ(shiftEnglish::character(0, conditions), std::nullopt);
    conditions = met;
    conditions.editable = false;
    EXPECT_EQ(shiftEnglish::character(0, conditions), std::nullopt);
}

TEST(ShiftEnglish, ConditionsThatAreNotNamedAreNotMet) {
    EXPECT_EQ(shiftEnglish::character(0, {.rtlSource = true, .editable = true}), std::nullopt);
    EXPECT_EQ(shiftEnglish::character(0, {.shift = true, .editable = true}), std::nullopt);
    EXPECT_EQ(shiftEnglish::character(0, {.shift = true, .rtlSource = true}), std::nullopt);
    EXPECT_EQ(shiftEnglish::character(0, {.shift = true, .rtlSource = true, .editable = true}), u'a');
}

TEST(ShiftEnglish, TheListOfKeysIsTheTable) {
    const auto keys = shiftEnglish::keyCodes();
    EXPECT_EQ(keys.size(), 26U);
    std::u16string letters;
    for (const auto key : keys) {
        letters.push_back(shiftEnglish::character(key, met).value_or(u'?'));
    }
    std::ranges::sort(letters);
    EXPECT_EQ(letters, u"abcdefghijklmnopqrstuvwxyz");
}

} // namespace
} // namespace quillane::core

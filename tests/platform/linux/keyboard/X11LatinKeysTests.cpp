// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11LatinKeys.hpp"

#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11SpareKeys.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using testing::waitUntil;
namespace key = testing::key;

class X11LatinKeysTest : public testing::X11Test {
protected:
    /// The keyboard with these layouts.
    const X11Keymap& load(const std::string& layouts, unsigned groups) {
        EXPECT_EQ(testing::run({"setxkbmap", "-layout", layouts}), 0);
        session_.emplace(std::move(*X11Session::open(server_.display())));
        EXPECT_TRUE(waitUntil(
            [&] { return session_->keyboard->isCurrent() && session_->keyboard->keymap().groupCount() == groups; }));
        return session_->keyboard->keymap();
    }

    std::optional<X11Session> session_;
};

TEST_F(X11LatinKeysTest, KeyOfAHebrewLayoutIsThatOfTheLatinLayoutBesideIt) {
    const auto& keymap = load("us,il", 2);
    EXPECT_EQ(latinKey(keymap, 1, key::q), 'q'); // a slash in Hebrew
    EXPECT_EQ(latinKey(keymap, 1, key::w), 'w'); // an apostrophe
    EXPECT_EQ(latinKey(keymap, 1, key::a), 'a');
    EXPECT_EQ(latinKey(keymap, 1, key::space), std::nullopt);
    EXPECT_EQ(latinKey(keymap, 1, key::leftShift), std::nullopt);
    EXPECT_EQ(latinKey(keymap, 1, 0), std::nullopt);
    EXPECT_EQ(latinKey(keymap, 1, 1000), std::nullopt);
}

TEST_F(X11LatinKeysTest, LetterOnASpareKeyBelongsToNoLayout) {
    load("us,il", 2);
    X11SpareKeys spareKeys(*session_->connection, *session_->keyboard);
    std::optional<xcb_keycode_t> spare;
    ASSERT_TRUE(waitUntil([&] { return (spare = spareKeys.keycodeFor('a')).has_value(); }));
    const auto& keyboard = *session_->keyboard;
    ASSERT_TRUE(waitUntil([&] { return keyboard.isCurrent() && keyboard.keymap().onlyKeysym(*spare) == 'a'; }));
    EXPECT_EQ(latinKey(keyboard.keymap(), 1, key::w), 'w');
    EXPECT_EQ(latinKey(keyboard.keymap(), 0, key::w), std::nullopt);
}

TEST_F(X11LatinKeysTest, LatinLayoutsOwnSymbolsCount) {
    const auto& keymap = load("us,us(dvorak)", 2);
    for (const unsigned group : {0U, 1U}) {
        EXPECT_EQ(latinKey(keymap, group, key::q), std::nullopt) << group;
    }
}

TEST_F(X11LatinKeysTest, LatinLayoutMayHaveItsLettersElsewhere) {
    const auto& keymap = load("il,fr", 2);
    EXPECT_EQ(latinKey(keymap, 0, key::q), 'a');
    EXPECT_EQ(latinKey(keymap, 0, key::z), 'w');
}

TEST_F(X11LatinKeysTest, WithoutALatinLayoutItIsThatOfTheUnitedStates) {
    const auto& keymap = load("il,ara", 2);
    for (const unsigned group : {0U, 1U}) {
        EXPECT_EQ(latinKey(keymap, group, key::q), 'q') << group;
        EXPECT_EQ(latinKey(keymap, group, key::w), 'w') << group;
        EXPECT_EQ(latinKey(keymap, group, key::m), 'm') << group;
        EXPECT_EQ(latinKey(keymap, group, key::digit1), std::nullopt) << group;
    }
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/InputSources.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace quillane::testing {

/// What every InputSources promises. The driver is constructed for each test, with two or more enabled layouts that do
/// not all have the same letters, and has:
///
///     InputSources& sources();
///     void switchFromOutside(const std::string& id);  // as the user does, by the system's own means
///     bool waitUntil(std::function<bool()>);          // lets the world go on; false when it takes too long
template <typename Driver>
class InputSourcesContract : public ::testing::Test {
protected:
    [[nodiscard]] std::string currentID() {
        const auto current = driver.sources().current();
        return current ? current->id : std::string();
    }

    /// An enabled source that is not in use.
    [[nodiscard]] std::string otherID() {
        for (const auto& source : driver.sources().enabled().value_or(std::vector<InputSource>())) {
            if (source.id != currentID()) {
                return source.id;
            }
        }
        return {};
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(InputSourcesContract);

TYPED_TEST_P(InputSourcesContract, EnabledSourcesHaveIdentifiersOfTheirOwnAndNames) {
    const auto sources = this->driver.sources().enabled();
    ASSERT_TRUE(sources);
    ASSERT_GE(sources->size(), 2U);
    std::set<std::string> ids;
    for (const auto& source : *sources) {
        EXPECT_FALSE(source.id.empty());
        EXPECT_FALSE(source.localizedName.empty()) << source.id;
        EXPECT_TRUE(ids.insert(source.id).second) << source.id;
    }
}

TYPED_TEST_P(InputSourcesContract, TheCurrentSourceIsOneOfThem) {
    const auto sources = this->driver.sources().enabled();
    const auto current = this->driver.sources().current();
    ASSERT_TRUE(sources && current);
    EXPECT_NE(std::ranges::find(*sources, *current), sources->end());
}

TYPED_TEST_P(InputSourcesContract, ASelectedSourceIsTheCurrentOne) {
    const auto id = this->otherID();
    ASSERT_TRUE(this->driver.sources().select(id));
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->currentID() == id; }));
}

TYPED_TEST_P(InputSourcesContract, TheCurrentSourceCanBeSelected) {
    const auto id = this->currentID();
    EXPECT_TRUE(this->driver.sources().select(id));
    EXPECT_EQ(this->currentID(), id);
}

TYPED_TEST_P(InputSourcesContract, ASourceThatIsNotEnabledIsRefused) {
    const auto before = this->currentID();
    EXPECT_FALSE(this->driver.sources().select("no such source"));
    EXPECT_FALSE(this->driver.sources().select(""));
    EXPECT_EQ(this->currentID(), before);
}

TYPED_TEST_P(InputSourcesContract, KeysOfEverySourceTypeText) {
    std::set<std::u32string> letters; // of one key
    for (const auto& source : this->driver.sources().enabled().value_or(std::vector<InputSource>())) {
        const auto layout = this->driver.sources().layout(source.id);
        ASSERT_TRUE(layout) << source.id;
        const auto space = layout->outputs.find({.keyCode = core::spaceKey});
        ASSERT_NE(space, layout->outputs.end()) << source.id;
        EXPECT_EQ(space->second, (core::KeyboardLayout::Output{U" "})) << source.id;
        constexpr core::KeyCode sKey = 1;
        letters.insert(layout->outputs.at({.keyCode = sKey}).text);
    }
    EXPECT_GE(letters.size(), 2U) << "every source types the same";
}

TYPED_TEST_P(InputSourcesContract, ASourceThatIsNotEnabledHasNoKeys) {
    EXPECT_FALSE(this->driver.sources().layout("no such source"));
    EXPECT_FALSE(this->driver.sources().layout(""));
}

TYPED_TEST_P(InputSourcesContract, AChangeIsNoticedFromHereAndFromOutside) {
    int notices = 0;
    const auto subscription = this->driver.sources().onChanged([&] { ++notices; });
    const auto first = this->currentID();
    const auto second = this->otherID();
    ASSERT_TRUE(this->driver.sources().select(second));
    EXPECT_TRUE(this->driver.waitUntil([&] { return notices >= 1; }));
    notices = 0;
    this->driver.switchFromOutside(first);
    EXPECT_TRUE(this->driver.waitUntil([&] { return notices >= 1 && this->currentID() == first; }));
}

TYPED_TEST_P(InputSourcesContract, ADroppedTokenEndsTheNotices) {
    int dropped = 0;
    int kept = 0;
    auto token = this->driver.sources().onChanged([&] { ++dropped; });
    const auto other = this->driver.sources().onChanged([&] { ++kept; });
    token = {};
    this->driver.switchFromOutside(this->otherID());
    EXPECT_TRUE(this->driver.waitUntil([&] { return kept >= 1; }));
    EXPECT_EQ(dropped, 0);
}

TYPED_TEST_P(InputSourcesContract, WithoutAShortcutTheSystemHasNotSwitched) {
    EXPECT_FALSE(this->driver.sources().switchedBySystemShortcut());
}

TYPED_TEST_P(InputSourcesContract, APageThatTheSettingsLackIsNotShown) {
    if (!this->driver.sources().hasSettings()) {
        EXPECT_FALSE(this->driver.sources().openSettings());
    }
}

REGISTER_TYPED_TEST_SUITE_P(InputSourcesContract, EnabledSourcesHaveIdentifiersOfTheirOwnAndNames,
                            TheCurrentSourceIsOneOfThem, ASelectedSourceIsTheCurrentOne, TheCurrentSourceCanBeSelected,
                            ASourceThatIsNotEnabledIsRefused, KeysOfEverySourceTypeText,
                            ASourceThatIsNotEnabledHasNoKeys, AChangeIsNoticedFromHereAndFromOutside,
                            ADroppedTokenEndsTheNotices, WithoutAShortcutTheSystemHasNotSwitched,
                            APageThatTheSettingsLackIsNotShown);

} // namespace quillane::testing

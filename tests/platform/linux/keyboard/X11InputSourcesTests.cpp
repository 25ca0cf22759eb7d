// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11InputSources.hpp"

#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/keyboard/XkbDefinitions.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <ranges>

namespace quillane {

namespace {

using ::testing::ElementsAre;
using testing::run;
using testing::waitUntil;
using Keyboard = testing::X11TestKeyboard;
namespace key = testing::key;

class X11InputSourcesTest : public testing::X11Test {
protected:
    X11InputSources& open() {
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
        return *sources_;
    }

    static std::vector<std::string> ids(const X11InputSources& sources) {
        std::vector<std::string> all;
        for (const auto& source : sources.enabled().value_or(std::vector<InputSource>())) {
            all.push_back(source.id);
        }
        return all;
    }

    static std::string currentId(const X11InputSources& sources) {
        const auto current = sources.current();
        return current ? current->id : "none";
    }

    Keyboard user_;
    X11Session session_;
    std::unique_ptr<X11InputSources> sources_;
};

TEST_F(X11InputSourcesTest, OneLayoutIsOneSource) {
    ASSERT_EQ(run({"setxkbmap", "il"}), 0);
    EXPECT_THAT(*open().enabled(), ElementsAre(InputSource{"il", "Hebrew", {"he"}}));
}

TEST_F(X11InputSourcesTest, FourGroupsComeInTheirOrderWithNamesAndLanguages) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il,ara,ir", "-variant", ",,mac,"}), 0);
    const auto& sources = open();
    EXPECT_THAT(*sources.enabled(),
                ElementsAre(InputSource{"us", "English (US)", {"en"}}, InputSource{"il", "Hebrew", {"he"}},
                            InputSource{"ara(mac)", "Arabic (Macintosh)", {"ar"}},
                            InputSource{"ir", "Persian", {"fa"}}));
    EXPECT_EQ(currentId(sources), "us");
}

TEST_F(X11InputSourcesTest, TheSameLayoutTwiceGetsTwoIdentifiers) {
    ASSERT_EQ(run({"setxkbmap", "us,il,us"}), 0);
    EXPECT_THAT(ids(open()), ElementsAre("us", "il", "us#2"));
}

TEST_F(X11InputSourcesTest, WithoutTheRootWindowsListTheNamesInTheMapCount) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    ASSERT_EQ(run({"xprop", "-root", "-remove", "_XKB_RULES_NAMES"}), 0);
    EXPECT_THAT(*open().enabled(), ElementsAre(InputSource{"English (US)", "English (US)", {"en"}},
                                               InputSource{"Hebrew", "Hebrew", {"he"}}));
}

TEST_F(X11InputSourcesTest, ADamagedListCountsAsNone) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    auto& sources = open();
    ASSERT_EQ(run({"xprop", "-root", "-format", "_XKB_RULES_NAMES", "8s", "-set", "_XKB_RULES_NAMES", "garbage"}), 0);
    EXPECT_TRUE(waitUntil([&] { return ids(sources).size() == 2 && ids(sources)[0] == "English (US)"; }));
}

TEST_F(X11InputSourcesTest, SelectingLocksTheGroupAndIsSeenAtOnce) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    auto& sources = open();
    ASSERT_TRUE(sources.select("il"));
    EXPECT_EQ(currentId(sources), "il");
    EXPECT_TRUE(waitUntil([&] { return user_.group() == 1; }));
    ASSERT_TRUE(sources.select("us"));
    EXPECT_EQ(currentId(sources), "us");
    EXPECT_TRUE(waitUntil([&] { return user_.group() == 0; }));
}

TEST_F(X11InputSourcesTest, AnOlderGroupReportedLateDoesNotUndoASelection) {
    ASSERT_EQ(run({"setxkbmap", "us,il,ara"}), 0);
    auto& sources = open();
    user_.lockGroup(2); // its report is still unread when the selection is made
    ASSERT_TRUE(sources.select("il"));
    std::vector<std::string> seen;
    const auto subscription = sources.onChanged([&] { seen.push_back(currentId(sources)); });
    ASSERT_TRUE(waitUntil([&] { return user_.group() == 1; }));
    session_.connection->settle(std::chrono::seconds(1));
    EXPECT_EQ(currentId(sources), "il");
    EXPECT_THAT(seen, ::testing::Each("il"));
}

TEST_F(X11InputSourcesTest, RefusesASourceThatIsNotEnabled) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    auto& sources = open();
    EXPECT_FALSE(sources.select("ara"));
    EXPECT_EQ(currentId(sources), "us");
}

/// Without what a layout alone does not decide: in a map of several layouts the extra key of ISO keyboards has the
/// characters of the first one. Of AltGr with Caps Lock, the server's types and libxkbcommon differ for ß and µ.
core::KeyboardLayout comparable(core::KeyboardLayout layout) {
    constexpr core::KeyCode extraKey = 10;
    const auto isLeftOut = [](const core::KeyStroke& stroke) {
        return stroke.keyCode == extraKey || (stroke.option && stroke.capsLock);
    };
    std::erase_if(layout.outputs, [&](const auto& entry) { return isLeftOut(entry.first); });
    std::erase_if(layout.compositions,
                  [&](const auto& entry) { return isLeftOut(entry.first.first) || isLeftOut(entry.first.second); });
    return layout;
}

TEST_F(X11InputSourcesTest, KeysAreThoseOfTheServersMap) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il,ara,ir", "-variant", "intl,,,"}), 0);
    const auto& sources = open();
    const auto definitions = testing::readXkbDefinitions({"us(intl)", "il", "ara", "ir"});
    ASSERT_EQ(definitions.rightToLeft.size(), 3U);
    ASSERT_EQ(definitions.english.size(), 1U);
    for (const auto* kind : {&definitions.rightToLeft, &definitions.english}) {
        for (const auto& [name, layout, typed] : *kind) {
            const auto read = sources.layout(name);
            ASSERT_TRUE(read) << name;
            EXPECT_EQ(comparable(*read).outputs.size(), comparable(layout).outputs.size()) << name;
            EXPECT_TRUE(comparable(*read) == comparable(layout)) << name;
        }
    }
}

TEST_F(X11InputSourcesTest, ReportsWhenAnotherProgramSwitches) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    auto& sources = open();
    int changes = 0;
    const auto subscription = sources.onChanged([&] { ++changes; });
    user_.lockGroup(1);
    EXPECT_TRUE(waitUntil([&] { return currentId(sources) == "il"; }));
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(sources.switchedBySystemShortcut());
}

TEST_F(X11InputSourcesTest, ReportsWhenTheListOfLayoutsChanges) {
    ASSERT_EQ(run({"setxkbmap", "us,il"}), 0);
    auto& sources = open();
    int changes = 0;
    const auto subscription = sources.onChanged([&] { ++changes; });
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,ara", "-variant", ",mac"}), 0);
    EXPECT_TRUE(waitUntil([&] { return ids(sources) == std::vector<std::string>{"us", "ara(mac)"}; }));
    EXPECT_GE(changes, 1);
}

TEST_F(X11InputSourcesTest, AKeyOfTheMapThatSwitchesIsASystemShortcutUntilModifiersArePressedAgain) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il", "-option", "grp:alt_shift_toggle"}), 0);
    auto& sources = open();
    user_.press(key::leftAlt);
    user_.press(key::leftShift);
    EXPECT_TRUE(waitUntil([&] { return currentId(sources) == "il"; }));
    EXPECT_TRUE(sources.switchedBySystemShortcut());
    user_.release(key::leftShift);
    user_.release(key::leftAlt);
    ASSERT_TRUE(waitUntil([&] { return session_.keyboard->flags() == 0; }));
    EXPECT_TRUE(sources.switchedBySystemShortcut());

    user_.press(key::leftControl);
    EXPECT_TRUE(waitUntil([&] { return !sources.switchedBySystemShortcut(); }));
    user_.release(key::leftControl);
}

TEST_F(X11InputSourcesTest, OwnSelectionIsNotASystemShortcut) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il", "-option", "grp:alt_shift_toggle"}), 0);
    auto& sources = open();
    ASSERT_TRUE(sources.select("il"));
    ASSERT_TRUE(waitUntil([&] { return user_.group() == 1; }));
    session_.connection->settle(std::chrono::seconds(1));
    EXPECT_FALSE(sources.switchedBySystemShortcut());
}

} // namespace

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds recovery{2000};

/// The agent when it loses the keyboard, and what it gives back.
class LiveTapRecoveryTest : public AgentTest {
protected:
    /// Types Shift with a letter until the editor gets the lower-case one, up to the time limit of a recovery.
    [[nodiscard]] bool shiftTypingComesBack() {
        return waitUntil(
            [&] {
                desktop().keyboard().tapWith({Key::leftShift}, Key::a);
                return editorText().ends_with('a');
            },
            recovery, milliseconds{100});
    }
};

TEST_F(LiveTapRecoveryTest, EveryKilledConnectionIsReplacedWithinTwoSeconds) {
    startTyping(editors().front());
    int killed = 0;
    for (const auto connection : connectionsOf(desktop().screen(), agent().process().pid())) {
        if (!showsWindows(desktop().screen(), connection)) {
            desktop().screen().killClientOf(connection);
            ++killed;
            EXPECT_TRUE(shiftTypingComesBack()) << editorText();
        }
    }
    EXPECT_GT(killed, 0);
    EXPECT_EQ(agent().status().at("monitorRunning"), true);
}

TEST_F(LiveTapRecoveryTest, SurvivesAnotherKeyboardMap) {
    startTyping(editors().front());
    ASSERT_TRUE(desktop().setKeyboardMap("us,il,ara"));
    desktop().screen().lockGroup(1);
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
}

TEST_F(LiveTapRecoveryTest, SurvivesKeyboardsThatComeAndGo) {
    startTyping(editors().front());
    ASSERT_TRUE(desktop().run({"xinput", "create-master", "Second"}).succeeded());
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
    ASSERT_TRUE(desktop().run({"xinput", "remove-master", "Second pointer"}).succeeded());
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
}

TEST_F(LiveTapRecoveryTest, FollowsApplicationsToAnotherAccessibilityBus) {
    startTyping(editors().front());
    ASSERT_TRUE(shiftTypingComesBack()) << editorText();
    desktop().killService("at-spi-bus-launcher"); // leaves its bus behind
    ASSERT_EQ(desktop().restartAccessibility(), "");
    startEditor(editors().front());
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
}

TEST_F(LiveTapRecoveryTest, SurvivesAGrabByAnotherProgram) {
    startTyping(editors().front());
    ASSERT_TRUE(grabKeyboard(desktop().screen()));
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    ungrabKeyboard(desktop().screen());
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
    EXPECT_TRUE(desktop().screen().keysDown().none());
}

/// The ways in which the agent ends, and what it must leave as it was.
class LiveGiveBackTest : public LiveTapRecoveryTest, public testing::WithParamInterface<int> {};

TEST_P(LiveGiveBackTest, GrabsAndSpareKeyCodesAreBackAfterTheEnd) {
    const auto keymap = desktop().screen().keymap();
    startTyping(editors().front());
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    expectEditorText("a");
    ASSERT_FALSE(isFreeToGrab(desktop().screen(), Key::a, XCB_MOD_MASK_SHIFT));
    ASSERT_NE(desktop().screen().keymap(), keymap);

    if (GetParam() == 0) {
        ASSERT_TRUE(agent().command({"quit"}).succeeded());
    } else {
        agent().process().signal(GetParam());
    }
    EXPECT_EQ(agent().process().waitForExit(defaultTimeout), (ExitStatus{0, 0}));
    EXPECT_EQ(desktop().screen().keymap(), keymap);
    EXPECT_TRUE(isFreeToGrab(desktop().screen(), Key::a, XCB_MOD_MASK_SHIFT));
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    expectEditorText("aA");
}

INSTANTIATE_TEST_SUITE_P(By, LiveGiveBackTest, testing::Values(0, SIGTERM, SIGINT), [](const auto& parameter) {
    return parameter.param == 0 ? "Quit" : parameter.param == SIGTERM ? "Sigterm" : "Sigint";
});

TEST_F(LiveTapRecoveryTest, PausingGivesTheKeysBackToo) {
    startTyping(editors().front());
    ASSERT_TRUE(shiftTypingComesBack()) << editorText(); // the keys have been taken
    ASSERT_FALSE(isFreeToGrab(desktop().screen(), Key::a, XCB_MOD_MASK_SHIFT));
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    EXPECT_TRUE(waitUntil([&] { return isFreeToGrab(desktop().screen(), Key::a, XCB_MOD_MASK_SHIFT); }));
}

} // namespace
} // namespace quillane::live

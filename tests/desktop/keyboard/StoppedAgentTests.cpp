// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "support/ProcessFacts.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

/// What is under way when the agent stops.
enum class Stage { idle, shiftHeld, chordHalfDone, keyHeldBack };

class LiveStoppedAgentTest : public AgentTest {
protected:
    void TearDown() override {
        agent().process().signal(SIGCONT); // or it answers nothing and does not end
        AgentTest::TearDown();
    }

    /// Waits until the agent holds the keys back that it may rewrite.
    void startHoldingKeys() {
        startTyping(editors().front());
        desktop().keyboard().tapWith({Key::leftShift}, Key::a);
        expectEditorText("a");
        ASSERT_TRUE(waitUntil([&] { return guard() > 0; }));
    }

    /// The agent's second process; 0 without one.
    [[nodiscard]] pid_t guard() { return childOf(agent().process().pid(), "quillane-keyboard-guard"); }

    [[nodiscard]] bool shiftTypingComesBack() {
        return waitUntil(
            [&] {
                desktop().keyboard().tapWith({Key::leftShift}, Key::a);
                return editorText().ends_with('a');
            },
            defaultTimeout, milliseconds{100});
    }
};

class LiveStoppedAtStageTest : public LiveStoppedAgentTest, public testing::WithParamInterface<Stage> {};

TEST_P(LiveStoppedAtStageTest, KeysReachTheEditorAndShiftTypingComesBack) {
    startHoldingKeys();
    const auto& keyboard = desktop().keyboard();
    switch (GetParam()) {
    case Stage::idle:
        agent().process().signal(SIGSTOP);
        break;
    case Stage::shiftHeld:
        keyboard.press(Key::leftShift);
        agent().process().signal(SIGSTOP);
        keyboard.tap(Key::s);
        keyboard.release(Key::leftShift);
        break;
    case Stage::chordHalfDone:
        keyboard.press(Key::leftAlt);
        agent().process().signal(SIGSTOP);
        keyboard.press(Key::leftShift);
        keyboard.release(Key::leftShift);
        keyboard.release(Key::leftAlt);
        keyboard.tap(Key::escape); // closes a menu that Alt alone has opened
        break;
    case Stage::keyHeldBack:
        keyboard.press(Key::leftShift);
        keyboard.press(Key::s);
        agent().process().signal(SIGSTOP);
        keyboard.release(Key::s);
        keyboard.release(Key::leftShift);
        break;
    }
    keyboard.tapWith({Key::leftShift}, Key::d); // the first press that nobody answers
    keyboard.type("asd");
    EXPECT_TRUE(waitUntil([&] { return editorText().ends_with("שדג"); }, milliseconds{5000})) << editorText();
    keyboard.tapWith({Key::leftShift}, Key::d);
    EXPECT_TRUE(waitUntil([&] { return editorText().ends_with("D"); }, milliseconds{5000})) << editorText();
    EXPECT_TRUE(desktop().screen().keysDown().none());

    agent().process().signal(SIGCONT);
    EXPECT_TRUE(shiftTypingComesBack()) << editorText();
    EXPECT_EQ(agent().status().at("monitorRunning"), true);
}

INSTANTIATE_TEST_SUITE_P(While, LiveStoppedAtStageTest,
                         testing::Values(Stage::idle, Stage::shiftHeld, Stage::chordHalfDone, Stage::keyHeldBack),
                         [](const auto& parameter) {
                             switch (parameter.param) {
                             case Stage::idle:
                                 return "Idle";
                             case Stage::shiftHeld:
                                 return "ShiftIsHeld";
                             case Stage::chordHalfDone:
                                 return "AChordIsHalfDone";
                             default:
                                 return "AKeyIsHeldBack";
                             }
                         });

TEST_F(LiveStoppedAgentTest, GuardCostsLessThanAMebibyteAndSleepsWhileNothingIsTyped) {
    startHoldingKeys();
    const auto before = wakeUpsOf(guard());
    EXPECT_TRUE(holdsFor(milliseconds{3000}, [&] { return wakeUpsOf(guard()) == before; }));
    EXPECT_GT(privateMemoryOf(guard()), 0U);
    EXPECT_LT(privateMemoryOf(guard()), 1024U * 1024U);
    RecordProperty("privateBytes", std::to_string(privateMemoryOf(guard())));
}

TEST_F(LiveStoppedAgentTest, GuardThatIsKilledIsReplacedWhenKeysAreGrabbedAgain) {
    startHoldingKeys();
    const auto first = guard();
    ASSERT_EQ(::kill(first, SIGKILL), 0);
    ASSERT_TRUE(agent().useGroup(0, false));
    ASSERT_TRUE(agent().useGroup(1, true));
    EXPECT_TRUE(waitUntil([&] { return guard() > 0 && guard() != first; }));
}

TEST_F(LiveStoppedAgentTest, GuardEndsWithTheAgent) {
    startHoldingKeys();
    const auto process = guard();
    agent().process().signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !isAlive(process); }));
}

} // namespace
} // namespace quillane::live

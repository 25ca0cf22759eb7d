// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// What comes in between while a direction is on its way, and what an application may do to the agent.

#include "desktop/direction/editors/EditorTest.hpp"

#include <algorithm>
#include <csignal>

namespace quillane::live {
namespace {

constexpr auto noCommand = "This editor does not offer a paragraph direction command";

/// The application ends in the middle of an attempt.
class LiveEndTest : public EditorTest {
protected:
    void expectNextAttemptWorks() {
        open(safari);
        turnRight();
        expectSaid("Applied RTL in Safari");
        expectState("directions", {"ltr", "rtl", "ltr"});
    }
};

TEST_F(LiveEndTest, WhenAskedForTheMenuIsAMenuThatCannotBeOpened) {
    startIn(safari, {"--menu", "exits"});
    turnRight();
    expectSaid("Safari cannot open the direction menu for this field");
    expectNextAttemptWorks();
}

TEST_F(LiveEndTest, WhileItsMenuIsOpenIsNoSuccess) {
    startIn(safari, {"--menu", "vanishes"});
    turnRight();
    expectState("menu", true);
    ASSERT_TRUE(document_->process().waitForExit(2s));
    // Its window may still be in front when the agent looks: a menu without the command is not wrong then.
    EXPECT_TRUE(holdsFor(2s, [&] {
        const auto said = agent().status().value("lastAction", "(no status)");
        return said.empty() || said == noCommand;
    })) << agent().status();
    expectNextAttemptWorks();
}

TEST_F(LiveEndTest, OfAllAnswersWhileTheMenuIsAwaitedHoldsNobodyUp) {
    startIn(safari, {"--menu", "late"});
    turnRight();
    expectState("asked", 1);
    document_->process().signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    auto maximum = std::chrono::steady_clock::duration::zero();
    while (std::chrono::steady_clock::now() - begin < 1s) {
        const auto asked = std::chrono::steady_clock::now();
        EXPECT_TRUE(agent().status().is_object());
        maximum = std::max(maximum, std::chrono::steady_clock::now() - asked);
    }
    EXPECT_LT(maximum, 500ms); // several calls of 150 ms each would take longer
    expectSaid("The direction menu is unavailable in this editor");
    document_->process().signal(SIGCONT);
    expectState("opened", 1);
    expectUntouched(); // the agent has closed it
    turnRight();
    expectSaid("Applied RTL in Safari");
    expectState("directions", {"ltr", "rtl", "ltr"});
}

/// Something that happens while the menu is awaited.
class LiveCancellationTest : public EditorTest {
protected:
    void beginWait() {
        startIn(safari, {"--menu", "late"});
        turnRight();
        expectState("asked", 1);
    }

    void expectCancelledAndNextAttemptWorks() {
        expectState("opened", 1); // late, and the agent, which asked for it, closes it
        EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("chosen").empty(); })) << state();
        EXPECT_EQ(agent().status().at("lastAction"), "");
        expectState("menu", false);
        turnLeft();
        expectSaid("Applied LTR in Safari");
    }
};

TEST_F(LiveCancellationTest, AKeyEndsTheWaitWithoutAWord) {
    beginWait();
    desktop().keyboard().tap(Key::end);
    expectCancelledAndNextAttemptWorks();
}

TEST_F(LiveCancellationTest, AClickEndsTheWaitWithoutAWord) {
    beginWait();
    desktop().keyboard().click(1);
    expectCancelledAndNextAttemptWorks();
}

TEST_F(LiveCancellationTest, APauseEndsTheWaitWithoutAWord) {
    beginWait();
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    expectCancelledAndNextAttemptWorks();
}

TEST_F(LiveCancellationTest, ALanguageSwitchEndsTheWait) {
    beginWait();
    desktop().keyboard().chord({Key::leftAlt, Key::leftShift});
    expectSaid("Keyboard language: Hebrew");
    expectState("opened", 1);
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("chosen").empty(); })) << state();
    expectUntouched();
}

/// Wrong answers of an application, and what becomes of the chord.
class LiveWrongAnswersTest : public EditorTest, public testing::WithParamInterface<MenuCase> {};

TEST_P(LiveWrongAnswersTest, AreAbsence) {
    startIn(safari, {"--answers", GetParam().mode});
    const auto begin = std::chrono::steady_clock::now();
    turnRight();
    expectSaid(GetParam().said);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    if (GetParam().isApplied) {
        expectState("directions", {"ltr", "rtl", "ltr"});
        expectState("menu", false);
    } else {
        expectUntouched();
    }
}

INSTANTIATE_TEST_SUITE_P(
    About, LiveWrongAnswersTest,
    testing::Values(MenuCase{"TheField", "field", safari.hint},
                    MenuCase{"TheCursor", "cursor",
                             "The editor does not expose the cursor position — direction was not changed"},
                    MenuCase{"TheEndOfTheText", "ranges", "Applied RTL in Safari", true},
                    MenuCase{"TheFocusInTheMenu", "focus", "Cursor position unavailable — direction change cancelled"},
                    MenuCase{"TheItemsOfTheMenu", "items", noCommand}, MenuCase{"TheirTitles", "titles", noCommand}),
    [](const auto& one) { return one.param.name; });

} // namespace
} // namespace quillane::live

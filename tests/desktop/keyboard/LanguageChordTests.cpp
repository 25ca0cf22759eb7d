// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds settled{400}; // longer than a second switch by the same chord would take

class LiveLanguageChordTest : public AgentEditorTest {
protected:
    void chord() { desktop().chordInto(editor().pid(), {Key::leftAlt, Key::leftShift}); }

    [[nodiscard]] bool reaches(int group) {
        return waitUntil([&] { return desktop().screen().group() == group; });
    }

    /// What was done before did not switch: the next chord is the first to do so.
    void expectOnlyThisChordSwitches() {
        chord();
        EXPECT_TRUE(reaches(1));
        EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 1; }));
    }
};

QUILLANE_IN_BOTH_EDITORS(LiveLanguageChordTest);

TEST_P(LiveLanguageChordTest, SwitchesToTheNextSourceAndBackAndSaysSo) {
    startTyping(GetParam(), false);
    chord();
    ASSERT_TRUE(reaches(1));
    EXPECT_TRUE(agent().waitForStatus(
        [](const auto& status) { return status.at("lastAction") == "Keyboard language: Hebrew"; }));
    desktop().keyboard().type("asd");
    expectEditorText("שדג");
    chord();
    ASSERT_TRUE(reaches(0));
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) {
        return status.at("lastAction").template get<std::string>().starts_with("Keyboard language: English");
    }));
    desktop().keyboard().type("asd");
    expectEditorText("שדגasd");
}

TEST_P(LiveLanguageChordTest, EitherKeyMayComeFirst) {
    startTyping(GetParam(), false);
    desktop().keyboard().chord({Key::leftShift, Key::leftAlt});
    EXPECT_TRUE(reaches(1));
}

TEST_P(LiveLanguageChordTest, OpensNoMenuAndMovesNoFocus) {
    startTyping(GetParam(), false);
    const auto focus = desktop().screen().focusedWindow();
    const auto active = desktop().screen().activeWindow();
    const auto shown = popUps(desktop().screen());
    chord();
    ASSERT_TRUE(reaches(1));
    EXPECT_TRUE(holdsFor(settled, [&] { return popUps(desktop().screen()) == shown; }));
    EXPECT_EQ(desktop().screen().focusedWindow(), focus);
    EXPECT_EQ(desktop().screen().activeWindow(), active);
    desktop().keyboard().type("a");
    expectEditorText("ש");
}

TEST_P(LiveLanguageChordTest, ALetterInBetweenCancels) {
    startTyping(GetParam(), false);
    desktop().keyboard().tapWith({Key::leftAlt, Key::leftShift}, Key::b);
    expectOnlyThisChordSwitches();
}

TEST_P(LiveLanguageChordTest, AClickInBetweenCancels) {
    startTyping(GetParam(), false);
    desktop().keyboard().press(Key::leftShift);
    desktop().keyboard().press(Key::leftAlt);
    desktop().keyboard().click(1);
    desktop().keyboard().release(Key::leftAlt);
    desktop().keyboard().release(Key::leftShift);
    expectOnlyThisChordSwitches();
}

TEST_P(LiveLanguageChordTest, AScrollInBetweenCancels) {
    startTyping(GetParam(), false);
    desktop().keyboard().press(Key::leftShift);
    desktop().keyboard().press(Key::leftAlt);
    desktop().keyboard().click(5);
    desktop().keyboard().release(Key::leftAlt);
    desktop().keyboard().release(Key::leftShift);
    expectOnlyThisChordSwitches();
}

TEST_P(LiveLanguageChordTest, OtherModifiersDoNotSwitch) {
    startTyping(GetParam(), false);
    desktop().keyboard().chord({Key::leftAlt, Key::rightShift});
    desktop().keyboard().chord({Key::leftAlt, Key::leftShift, Key::leftSuper});
    desktop().keyboard().chord({Key::leftControl, Key::leftAlt, Key::leftShift});
    expectOnlyThisChordSwitches();
}

TEST_P(LiveLanguageChordTest, HeldAcrossAnApplicationSwitchNeverFires) {
    startTyping(GetParam(), false);
    auto other = desktop().startApplication({"featherpad", "--standalone"});
    ASSERT_TRUE(other) << other.error();
    desktop().keyboard().press(Key::leftAlt);
    desktop().keyboard().press(Key::leftShift);
    ASSERT_TRUE(desktop().bringToFront(editor().pid()));
    desktop().keyboard().release(Key::leftShift);
    desktop().keyboard().release(Key::leftAlt);
    // The next chord begins once the agent knows who is in front, or the switch would cancel that one too.
    ASSERT_TRUE(agent().bringToFront(editor().pid()));
    expectOnlyThisChordSwitches();
}

TEST_P(LiveLanguageChordTest, DoesNothingWhilePaused) {
    startTyping(GetParam(), false);
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    chord();
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 0; }));
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }));
    chord();
    EXPECT_TRUE(reaches(1));
}

TEST_P(LiveLanguageChordTest, SwitchesOnceWhereTheKeymapSwitchesToo) {
    startTyping(GetParam(), false);
    ASSERT_TRUE(desktop().setKeyboardMap("us,il", "grp:alt_shift_toggle"));
    ASSERT_TRUE(agent().useGroup(0, false));
    chord();
    ASSERT_TRUE(reaches(1));
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 1; }));
    chord();
    ASSERT_TRUE(reaches(0));
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 0; }));
}

using LiveLanguageSettingsTest = AgentTest;

TEST_F(LiveLanguageSettingsTest, OneSourceAloneIsReported) {
    LiveDesktopOptions oneLayout;
    oneLayout.layouts = "us";
    startDesktop(oneLayout);
    startTyping(editors().front(), false);
    desktop().keyboard().chord({Key::leftAlt, Key::leftShift});
    EXPECT_TRUE(agent().waitForStatus(
        [](const auto& status) { return status.at("lastAction") == "Enable at least two keyboard languages"; }));
}

TEST_F(LiveLanguageSettingsTest, SwitchedOffTheChordDoesNothing) {
    ASSERT_TRUE(writeAgentSettings(desktop(), {{"LanguageSwitchEnabled", "<false/>"}}));
    startTyping(editors().front(), false);
    desktop().keyboard().chord({Key::leftAlt, Key::leftShift});
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 0; }));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "support/ProcessMemory.hpp"

namespace quillane::live {
namespace {

constexpr std::chrono::milliseconds settled{300}; // longer than a change would take

class LiveRetypingTest : public AgentEditorTest {
protected:
    /// The agent and an empty editor run, and English is in use.
    void start() { startTyping(GetParam(), false); }

    void type(std::string_view letters, const std::string& expected) {
        desktop().keyboard().type(letters);
        expectEditorText(expected);
    }

    void chord() { desktop().chordInto(editor().pid(), {Key::leftAlt, Key::rightShift}); }

    void expectSource(bool isRightToLeft) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) {
            return status.at("inputSource").at("isRTL") == isRightToLeft;
        })) << agent().status();
    }

    void useArabic() {
        ASSERT_TRUE(desktop().setKeyboardMap("us,ara"));
        ASSERT_TRUE(agent().useGroup(1, true));
        ASSERT_TRUE(agent().useGroup(0, false));
    }
};

QUILLANE_IN_BOTH_EDITORS(LiveRetypingTest);

TEST_P(LiveRetypingTest, LastWordIsFixedAndTypingGoesOnInItsSource) {
    start();
    type("hello akuo", "hello akuo");
    chord();
    expectEditorText("hello שלום");
    expectSource(true);
    type(" guko", "hello שלום עולם");
}

TEST_P(LiveRetypingTest, WordTypedInHebrewBecomesEnglish) {
    start();
    ASSERT_TRUE(agent().useGroup(1, true));
    type("hello", "יקךךם");
    chord();
    expectEditorText("hello");
    expectSource(false);
    type("x", "hellox");
}

TEST_P(LiveRetypingTest, ArabicKeyWithTwoLettersIsFixedBothWays) {
    start();
    useArabic();
    type("sbl", "sbl");
    chord();
    expectEditorText("سلام");
    expectSource(true);
    desktop().keyboard().type(" sbl");
    EXPECT_TRUE(waitUntil([&] { // some editors have one character for the two letters of the key
        return editorText() == "سلام سلام" || editorText() == "سلام س\uFEFBم";
    })) << editorText();
    chord();
    expectEditorText("سلام sbl");
    expectSource(false);
}

TEST_P(LiveRetypingTest, NothingIsTakenBeyondACursorKey) {
    start();
    type("akuo", "akuo");
    desktop().keyboard().tap(Key::left);
    desktop().keyboard().tap(Key::right);
    chord();
    EXPECT_TRUE(holdsFor(settled, [&] { return editorText() == "akuo"; }));
    type("u", "akuou");
    chord();
    expectEditorText("akuoו");
}

TEST_P(LiveRetypingTest, SelectionIsFixedAndStaysSelected) {
    start();
    type("akuo vhuo", "akuo vhuo");
    desktop().chordInto(editor().pid(), {Key::leftControl, Key::a});
    chord();
    expectEditorText("שלום היום");
    expectSource(true);
    desktop().keyboard().type("a");
    expectEditorText("ש");
}

TEST_P(LiveRetypingTest, UndoTakesItBack) {
    start();
    type("hello akuo", "hello akuo");
    chord();
    expectEditorText("hello שלום");
    expectSource(true);
    for (int step = 0; step < 2 && editorText() != "hello akuo"; ++step) { // an editor may count two changes
        const auto before = editorText();
        desktop().chordInto(editor().pid(), {Key::leftControl, Key::z});
        EXPECT_TRUE(waitUntil([&] { return editorText() != before; }));
    }
    expectEditorText("hello akuo");
}

TEST_P(LiveRetypingTest, ChordLeavesNoKeyStuckAndOpensNoMenu) {
    start();
    type("akuo", "akuo");
    const auto shown = popUps(desktop().screen());
    desktop().chordInto(editor().pid(), {Key::rightShift, Key::leftAlt});
    expectEditorText("שלום");
    EXPECT_TRUE(desktop().screen().keysDown().none());
    EXPECT_EQ(popUps(desktop().screen()), shown);
}

TEST_P(LiveRetypingTest, PausedAgentLeavesTextAlone) {
    start();
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    type("akuo", "akuo");
    chord();
    EXPECT_TRUE(holdsFor(settled, [&] { return editorText() == "akuo"; }));
}

TEST_P(LiveRetypingTest, AlonePlaysItsPartWithoutTheOtherFeatures) {
    ASSERT_TRUE(writeAgentSettings(desktop(), {{"ShiftEnglishEnabled", "<false/>"},
                                               {"LanguageSwitchEnabled", "<false/>"},
                                               {"WritingDirectionEnabled", "<false/>"}}));
    start();
    type("akuo", "akuo");
    chord();
    expectEditorText("שלום");
}

TEST_P(LiveRetypingTest, TurnedOffItLeavesTextAlone) {
    ASSERT_TRUE(writeAgentSettings(desktop(), {{"FixWrongLayoutEnabled", "<false/>"}}));
    start();
    type("akuo", "akuo");
    chord();
    EXPECT_TRUE(holdsFor(settled, [&] { return editorText() == "akuo"; }));
}

TEST_P(LiveRetypingTest, EmojiPointsAndRightToLeftLinesKeepTheirPlaces) {
    startAgent();
    const auto file = desktop().home() / "lines.txt";
    const std::string text = "שָׁל😀 \nשורה ";
    ASSERT_TRUE(writeFile(file, text));
    auto command = GetParam().command;
    command.push_back(file);
    startEditorWith(command, text);
    ASSERT_TRUE(agent().useGroup(0, false));
    desktop().chordInto(editor().pid(), {Key::leftControl, Key::home});
    desktop().keyboard().tap(Key::end);
    type("akuo", "שָׁל😀 akuo\nשורה ");
    chord();
    expectEditorText("שָׁל😀 שלום\nשורה ");
    desktop().chordInto(editor().pid(), {Key::leftControl, Key::end});
    ASSERT_TRUE(agent().useGroup(0, false));
    type("akuo", "שָׁל😀 שלום\nשורה akuo");
    chord();
    expectEditorText("שָׁל😀 שלום\nשורה שלום");
    desktop().chordInto(editor().pid(), {Key::leftControl, Key::a});
    chord();
    expectEditorText("aָׁk😀 akuo\naurv akuo");
}

TEST_P(LiveRetypingTest, NothingThatWasTypedStaysInMemory) {
#if !defined(QUILLANE_WIPES_FREED_MEMORY)
    GTEST_SKIP() << "sanitizers have heaps of their own, which keep what was freed";
#endif
    startAgent({{"QUILLANE_TRACEABLE", "1"}});
    startEditor(GetParam());
    ASSERT_TRUE(agent().useGroup(0, false));
    type("hippopotamus rhinoceros", "hippopotamus rhinoceros");
    chord();
    expectEditorText("hippopotamus ריןמםבקרםד");
    expectSource(true);
    const auto pid = agent().process().pid();
    for (const auto* text : {u"hippopotamus", u"rhinoceros", u"ריןמםבקרםד"}) {
        std::vector<MemoryMatch> found;
        EXPECT_TRUE(waitUntil([&] { return (found = findTextInMemory(pid, text)).empty(); })) << describe(found);
    }
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveForm.hpp"

#include <algorithm>
#include <random>
#include <thread>

namespace quillane::live {
namespace {

class LiveShiftTypingTest : public AgentEditorTest {
protected:
    void typeWithShift(std::string_view letters) {
        desktop().keyboard().press(Key::leftShift);
        desktop().keyboard().type(letters);
        desktop().keyboard().release(Key::leftShift);
    }
};

QUILLANE_IN_BOTH_EDITORS(LiveShiftTypingTest);

TEST_P(LiveShiftTypingTest, TypesLowerCaseEnglishInHebrewAndLeavesNoKeyStuck) {
    startTyping(GetParam());
    typeWithShift("asd");
    expectEditorText("asd");
    EXPECT_TRUE(desktop().screen().keysDown().none());
    desktop().keyboard().type("asd");
    expectEditorText("asdשדג");
}

TEST_P(LiveShiftTypingTest, WorksWithTheRightShiftToo) {
    startTyping(GetParam());
    desktop().keyboard().tapWith({Key::rightShift}, Key::k);
    expectEditorText("k");
}

TEST_P(LiveShiftTypingTest, TypesEveryLetterOfTheAlphabet) {
    startTyping(GetParam());
    typeWithShift("abcdefghijklmnopqrstuvwxyz");
    expectEditorText("abcdefghijklmnopqrstuvwxyz");
}

TEST_P(LiveShiftTypingTest, KeysMayBeReleasedInAnyOrder) {
    startTyping(GetParam());
    const auto& keyboard = desktop().keyboard();
    keyboard.press(Key::leftShift);
    keyboard.press(Key::a);
    keyboard.press(Key::s);
    keyboard.release(Key::a);
    keyboard.release(Key::leftShift);
    keyboard.release(Key::s);
    expectEditorText("as");
    EXPECT_TRUE(desktop().screen().keysDown().none());
    keyboard.type("d"); // a key that an application thinks is down would repeat by now
    expectEditorText("asג");
}

TEST_P(LiveShiftTypingTest, LeavesDigitsAlone) {
    startTyping(GetParam());
    desktop().keyboard().tapWith({Key::leftShift}, Key::digit1);
    expectEditorText("!");
}

TEST_P(LiveShiftTypingTest, LeavesShortcutsAlone) {
    startTyping(GetParam());
    desktop().chordInto(editor().pid(), {Key::leftControl, Key::leftShift, Key::a});
    typeWithShift("b");
    expectEditorText("b"); // the shortcut typed nothing
}

TEST_P(LiveShiftTypingTest, LeavesAnEnglishSourceAlone) {
    startTyping(GetParam(), false);
    typeWithShift("asd");
    expectEditorText("ASD");
}

TEST_P(LiveShiftTypingTest, FollowsTheSourceAtOnce) {
    startTyping(GetParam());
    typeWithShift("a");
    expectEditorText("a");
    ASSERT_TRUE(agent().useGroup(0, false));
    typeWithShift("a");
    expectEditorText("aA");
    ASSERT_TRUE(agent().useGroup(1, true));
    typeWithShift("a");
    expectEditorText("aAa");
}

TEST_P(LiveShiftTypingTest, DoesNothingWhilePaused) {
    startTyping(GetParam());
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    ASSERT_EQ(agent().status().at("paused"), true);
    typeWithShift("a");
    expectEditorText("A"); // what the Hebrew layout itself has there
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }));
    typeWithShift("a");
    expectEditorText("Aa");
}

TEST_P(LiveShiftTypingTest, WorksInArabic) {
    startTyping(GetParam());
    ASSERT_TRUE(desktop().setKeyboardMap("us,ara"));
    ASSERT_TRUE(agent().useGroup(0, false));
    ASSERT_TRUE(agent().useGroup(1, true));
    typeWithShift("asd");
    expectEditorText("asd");
    desktop().keyboard().type("asd");
    expectEditorText("asdشسي");
}

TEST_P(LiveShiftTypingTest, HundredRandomWordsAtTwentyKeysASecondArriveInOrder) {
    startTyping(GetParam());
    constexpr std::chrono::milliseconds pause{50};
    std::mt19937 random(20); // the same words in every run
    std::uniform_int_distribution<int> length(2, 8);
    std::uniform_int_distribution<int> letter('a', 'z');
    std::string typed;
    auto next = std::chrono::steady_clock::now();
    const auto& keyboard = desktop().keyboard();
    for (int word = 0; word < 100; ++word) {
        keyboard.press(Key::leftShift);
        for (int i = length(random); i > 0; --i) {
            typed += static_cast<char>(letter(random));
            keyboard.tap(keyOfLetter(typed.back()));
            std::this_thread::sleep_until(next += pause);
        }
        keyboard.release(Key::leftShift);
        typed += ' ';
        keyboard.tap(Key::space);
        std::this_thread::sleep_until(next += pause);
    }
    expectEditorText(typed);
    EXPECT_TRUE(desktop().screen().keysDown().none());
}

class LiveShiftTypingInFormTest : public AgentTest {
protected:
    void startForm(const std::string& focus) {
        startAgent();
        form_ = required(LiveForm::start(desktop(), focus));
        require(agent().useGroup(1, true), "the agent does not see the input source");
    }

    void TearDown() override {
        AgentTest::TearDown();
        form_.reset();
    }

    std::optional<LiveForm> form_;
};

TEST_F(LiveShiftTypingInFormTest, TypesIntoAPlainField) {
    startForm("plain");
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    EXPECT_TRUE(waitUntil([&] { return form_->text("plain") == "a"; })) << form_->text("plain");
}

TEST_F(LiveShiftTypingInFormTest, LeavesAPasswordFieldAlone) {
    startForm("password");
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    EXPECT_TRUE(waitUntil([&] { return form_->text("password") == "A"; })) << form_->text("password");
}

TEST_F(LiveShiftTypingInFormTest, LeavesAFieldAloneThatCannotBeEdited) {
    startForm("readonly");
    desktop().keyboard().tapWith({Key::leftShift}, Key::a);
    const auto isLetter = [](const auto& event) { return event.at("code") == static_cast<int>(Key::a); };
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count_if(form_->events("release"), isLetter) > 0; }));
    for (const auto& event : form_->events("press")) {
        EXPECT_TRUE(!isLetter(event) || event.at("text") == "A") << event;
    }
}

TEST_F(LiveShiftTypingInFormTest, ShortcutsKeepTheirKey) {
    startForm("plain");
    desktop().keyboard().tapWith({Key::leftControl, Key::leftShift}, Key::a);
    const auto isShortcut = [](const auto& event) {
        constexpr unsigned shiftAndControl = 1 | 4; // the state bits of the core protocol
        return event.at("code") == static_cast<int>(Key::a) &&
               (event.at("state").template get<unsigned>() & shiftAndControl) == shiftAndControl;
    };
    EXPECT_TRUE(waitUntil([&] { return std::ranges::count_if(form_->events("press"), isShortcut) == 1; }));
}

} // namespace
} // namespace quillane::live

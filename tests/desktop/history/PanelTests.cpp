// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/LiveForm.hpp"
#include "desktop/agent/LiveMenu.hpp"
#include "desktop/history/LiveHistory.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <set>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

class LivePanelTest : public LiveHistoryTest {
protected:
    /// Grabs the hot key as most programs do, through the core protocol; false when another program has it.
    [[nodiscard]] bool grabHotKey() {
        auto* c = desktop().screen().connection();
        const auto cookie = xcb_grab_key_checked(c, 0, desktop().screen().root(), modifiers, hotKey,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(xcb_request_check(c, cookie), std::free);
        return error == nullptr;
    }

    void ungrabHotKey() {
        xcb_ungrab_key(desktop().screen().connection(), hotKey, desktop().screen().root(), modifiers);
        desktop().screen().sync();
    }

    static constexpr auto hotKey = static_cast<xcb_keycode_t>(Key::v);
    static constexpr std::uint16_t modifiers = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
};

/// The panel over each of two editors, one of each toolkit.
class LivePanelOverEditorTest : public LiveHistoryTest, public testing::WithParamInterface<Editor> {
protected:
    void start(const std::vector<std::string>& copies) {
        startHistory();
        int count = 0;
        for (const auto& text : copies) {
            copy(text);
            require(hasEntries(++count), "a copy is not recorded");
        }
        startEditor(GetParam());
    }
};

TEST_P(LivePanelOverEditorTest, AChosenSearchResultIsPasted) {
    start({"alpha one", "beta two", "gamma three"});
    openPanel();
    desktop().keyboard().type("alp");
    desktop().keyboard().tap(Key::enter);
    expectEditorText("alpha one");
    EXPECT_TRUE(isPanelOpen(false));
    desktop().keyboard().type(" goes on"); // the editor has the keys again
    expectEditorText("alpha one goes on");
    EXPECT_TRUE(hasEntries(3));
}

TEST_P(LivePanelOverEditorTest, AHebrewLayoutSearchesAndPastesHebrew) {
    start({"שלום עולם", "hello"});
    require(agent().useGroup(1, true), "no Hebrew layout");
    openPanel();
    for (const auto key : {Key::g, Key::u, Key::k}) { // עול
        desktop().keyboard().tap(key);
    }
    desktop().keyboard().tap(Key::enter);
    expectEditorText("שלום עולם");
}

TEST_P(LivePanelOverEditorTest, ANumberPastesThatEntry) {
    start({"one", "two", "three"});
    openPanel();
    desktop().keyboard().tapWith({Key::leftControl}, Key::digit2);
    expectEditorText("two");
}

TEST_P(LivePanelOverEditorTest, ShiftDeleteDeletesTheEntryAndControlBackspaceAWordOfTheSearch) {
    start({"one", "two", "three"});
    openPanel();
    desktop().keyboard().type("nothing");
    desktop().keyboard().tapWith({Key::leftControl}, Key::backspace);
    desktop().keyboard().tapWith({Key::leftShift}, Key{119}); // Delete
    EXPECT_TRUE(hasEntries(2));
    desktop().keyboard().tap(Key::enter);
    expectEditorText("two");
}

TEST_P(LivePanelOverEditorTest, ArrowsMoveTheSelection) {
    start({"one", "two", "three"});
    openPanel();
    desktop().keyboard().tap(Key::down);
    desktop().keyboard().tap(Key::down);
    desktop().keyboard().tap(Key::up);
    desktop().keyboard().tap(Key::enter);
    expectEditorText("two");
}

TEST_P(LivePanelOverEditorTest, OptionReturnOnlyCopies) {
    start({"one", "two"});
    openPanel();
    desktop().keyboard().tap(Key::down);
    desktop().keyboard().tapWith({Key::leftAlt}, Key::enter);
    EXPECT_TRUE(isPanelOpen(false));
    EXPECT_TRUE(waitUntil([&] { return clipboard() == "one"; }));
    EXPECT_TRUE(holdsFor(milliseconds{600}, [&] { return editorText().empty(); }));
}

TEST_P(LivePanelOverEditorTest, ANumberWithoutAnEntryDoesNothing) {
    start({"one", "two", "three"});
    openPanel();
    desktop().keyboard().tapWith({Key::leftControl}, Key{14}); // 5
    EXPECT_TRUE(holdsFor(milliseconds{600}, [&] { return agent().status().at("clipboard").at("panelOpen") == true; }));
    desktop().keyboard().tap(Key::escape);
    EXPECT_TRUE(isPanelOpen(false));
    EXPECT_EQ(editorText(), "");
}

TEST_P(LivePanelOverEditorTest, AClickElsewhereClosesItAndPastesNothing) {
    start({"one"});
    desktop().keyboard().movePointer(640, 300);
    openPanel();
    desktop().keyboard().movePointer(5, 700);
    desktop().keyboard().click(1);
    EXPECT_TRUE(isPanelOpen(false));
    EXPECT_TRUE(holdsFor(milliseconds{600}, [&] { return editorText().empty(); }));
}

TEST_P(LivePanelOverEditorTest, TheHotKeyClosesItAgain) {
    start({"one"});
    openPanel();
    pressHotKey();
    EXPECT_TRUE(isPanelOpen(false));
    desktop().keyboard().type("ab");
    expectEditorText("ab");
}

TEST_P(LivePanelOverEditorTest, TheApplicationInFrontStaysThere) {
    start({"one"});
    const auto window = desktop().screen().activeWindow();
    openPanel();
    EXPECT_TRUE(holdsFor(milliseconds{400}, [&] { return desktop().screen().activeWindow() == window; }));
    EXPECT_EQ(desktop().screen().processOf(*window), editor().pid());
}

TEST_P(LivePanelOverEditorTest, ARowOfTheMenuOpensItAndItPastesToo) {
    start({"one"});
    auto menu = required(LiveMenu::open(desktop()));
    open([&] { require(menu.choose("Clipboard history"), "no such row"); });
    desktop().keyboard().tap(Key::enter);
    expectEditorText("one");
}

QUILLANE_IN_BOTH_EDITORS(LivePanelOverEditorTest);

TEST_F(LivePanelTest, PlainTextIsPastedWithoutItsStyles) {
    startHistory();
    ASSERT_TRUE(writeFile(desktop().home() / "styled", "<b>bold</b>"));
    ASSERT_TRUE(writeFile(desktop().home() / "plain", "bold"));
    const auto copying =
        required(desktop().startProcess({QUILLANE_COPY_STANDIN, "text/html", desktop().home() / "styled",
                                         "text/plain;charset=utf-8", desktop().home() / "plain"}));
    ASSERT_TRUE(hasEntries(1));
    startEditor(editors().front());
    openPanel();
    desktop().keyboard().tap(Key::enter);
    expectEditorText("bold");
    EXPECT_THAT(clipboard("TARGETS"), HasSubstr("text/html"));
    openPanel();
    desktop().keyboard().tapWith({Key::leftShift}, Key::enter);
    expectEditorText("boldbold");
    EXPECT_THAT(clipboard("TARGETS"), testing::Not(HasSubstr("text/html")));
}

/// Qt declares the application inactive 100 ms after it lost the keys, and closes what pops up then.
TEST_F(LivePanelTest, StaysWhenItOpensAgainSoonAfterItClosed) {
    startHistory();
    for (auto pause = milliseconds{60}; pause <= milliseconds{120}; pause += milliseconds{3}) {
        openPanel();
        desktop().keyboard().tap(Key::escape);
        std::this_thread::sleep_for(pause); // between the two
        pressHotKey();
        ASSERT_TRUE(isPanelOpen(true)) << pause.count();
        ASSERT_TRUE(holdsFor(milliseconds{150}, [&] {
            return agent().status().at("clipboard").at("panelOpen") == true;
        })) << pause.count();
        desktop().keyboard().tap(Key::escape); // the keys are the panel's
        ASSERT_TRUE(isPanelOpen(false)) << pause.count();
        ASSERT_TRUE(holdsFor(milliseconds{500}, [&] { return !agent().status().at("clipboard").at("panelOpen"); }));
    }
}

TEST_F(LivePanelTest, WithNothingCopiedItOpensAndEscapeClosesIt) {
    startHistory();
    openPanel();
    desktop().keyboard().tap(Key::enter);
    EXPECT_TRUE(holdsFor(milliseconds{300}, [&] { return agent().status().at("clipboard").at("panelOpen") == true; }));
    desktop().keyboard().tap(Key::escape);
    EXPECT_TRUE(isPanelOpen(false));
}

TEST_F(LivePanelTest, ALanguageThatIsChosenIsSeenInIt) {
    startHistory();
    EXPECT_EQ(open([&] { pressHotKey(); }).name, "Search history…");
    desktop().keyboard().tap(Key::escape);
    ASSERT_TRUE(isPanelOpen(false));
    ASSERT_TRUE(desktop().run({agentExecutable()}).succeeded());
    ASSERT_TRUE(desktop().waitUntilInFront(agent().process().pid()));
    ASSERT_TRUE(desktop().run({"xdotool", "key", "Tab", "Down"}).succeeded()); // from English to Hebrew
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("language") == "he"; }));
    EXPECT_EQ(open([&] { pressHotKey(); }).name, "חיפוש בהיסטוריה…");
}

TEST_F(LivePanelTest, TheCommandOpensAndClosesIt) {
    startHistory();
    EXPECT_TRUE(agent().command({"history"}).succeeded());
    EXPECT_TRUE(isPanelOpen(true));
    EXPECT_TRUE(agent().command({"history"}).succeeded());
    EXPECT_TRUE(isPanelOpen(false));
}

TEST_F(LivePanelTest, TheClipboardAtLaunchIsNotRecorded) {
    copy("before");
    startHistory();
    EXPECT_TRUE(holdsFor(milliseconds{1200}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
    copy("after");
    EXPECT_TRUE(hasEntries(1));
}

TEST_F(LivePanelTest, TenQuickCopiesAreWrittenOnce) {
    startHistory();
    copy("first");
    const auto index = desktop().home() / ".local" / "share" / "Quillane" / "ClipboardHistory" / "index";
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(index); }));
    ASSERT_TRUE(holdsFor(milliseconds{500}, [] { return true; }));
    std::set<std::filesystem::file_time_type> written{std::filesystem::last_write_time(index)};
    auto copying = required(desktop().startProcess(
        {"sh", "-c",
         "for i in $(seq 10); do printf %s \"copy $i\" | xclip -selection clipboard -i; sleep 0.03; done"}));
    EXPECT_TRUE(holdsFor(milliseconds{2500}, [&] {
        std::error_code gone; // it is replaced by a new file
        const auto time = std::filesystem::last_write_time(index, gone);
        if (!gone) {
            written.insert(time);
        }
        return true;
    }));
    EXPECT_TRUE(hasEntries(11));
    EXPECT_EQ(written.size(), 2U);
}

TEST_F(LivePanelTest, NothingIsRecordedWhileAPasswordManagerIsInFront) {
    startHistory();
    const auto manager = required(LiveForm::start(desktop(), "plain", "keepassxc"));
    copy("a password");
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
}

TEST_F(LivePanelTest, NothingIsRecordedWhileAPasswordIsTyped) {
    startHistory();
    const auto form = required(LiveForm::start(desktop(), "password"));
    copy("a password");
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
}

TEST_F(LivePanelTest, AConcealedCopyIsNotRecorded) {
    startHistory();
    ASSERT_TRUE(writeFile(desktop().home() / "password", "hunter2"));
    ASSERT_TRUE(writeFile(desktop().home() / "hint", "secret"));
    const auto copying = required(
        desktop().startProcess({QUILLANE_COPY_STANDIN, "text/plain;charset=utf-8", desktop().home() / "password",
                                "x-kde-passwordManagerHint", desktop().home() / "hint"}));
    ASSERT_TRUE(waitUntil([&] { return clipboard("text/plain;charset=utf-8") == "hunter2"; }));
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
}

TEST_F(LivePanelTest, AnotherComputersScreenTakesTheHotKeyAndPausesTheHistory) {
    startHistory();
    ASSERT_FALSE(grabHotKey());
    {
        const auto viewer = required(LiveForm::start(desktop(), "plain", "remmina"));
        EXPECT_TRUE(agent().waitForStatus(
            [](const auto& status) { return status.at("clipboard").at("status") == "Clipboard history is paused"; }));
        EXPECT_TRUE(waitUntil([&] { return grabHotKey(); }));
        ungrabHotKey();
        copy("over there");
        EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
    }
    EXPECT_TRUE(agent().waitForStatus(
        [](const auto& status) { return status.at("clipboard").at("status") == "Clipboard history is active"; }));
    EXPECT_FALSE(grabHotKey());
}

TEST_F(LivePanelTest, AHotKeyOfAnotherProgramIsReportedAndCanBeTriedAgain) {
    ASSERT_TRUE(grabHotKey());
    startAgent();
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) {
        return status.at("clipboard").at("hotKeyConflict") == true &&
               status.at("clipboard").at("status") == "The shortcut is in use. Change it in the other app or in your "
                                                      "desktop’s keyboard settings, then retry.";
    })) << agent().status();
    ungrabHotKey();
    ASSERT_TRUE(desktop().run({agentExecutable()}).succeeded());
    ASSERT_TRUE(pressButton("History"));
    ASSERT_TRUE(pressButton("Retry shortcut registration"));
    EXPECT_TRUE(agent().waitForStatus(
        [](const auto& status) { return status.at("clipboard").at("status") == "Clipboard history is active"; }));
    pressHotKey();
    EXPECT_TRUE(isPanelOpen(true));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveBrowserTest.hpp"

#include <csignal>
#include <thread>

namespace quillane::live {
namespace {

/// Debian's Chromium.
class LiveChromiumTest : public LiveBrowserTest {
protected:
    void startIn(const std::string& focus) {
        startWith([&] { return LiveBrowser::start(desktop(), focus); });
    }
};

TEST_F(LiveChromiumTest, AChordTurnsTheTextAreaAndTurnsItBack) {
    startIn("area");
    const auto before = state();
    EXPECT_EQ(before.direction, "ltr");
    turnRight();
    expectDirection("rtl");
    expectSaid("Applied RTL in Chromium");
    expectNoMenu();
    auto turned = before;
    turned.direction = "rtl";
    EXPECT_EQ(state(), turned);
    turnLeft();
    expectDirection("ltr");
    expectSaid("Applied LTR in Chromium");
    expectNoMenu();
    EXPECT_EQ(state(), before);
    desktop().keyboard().tap(Key::q);
    EXPECT_TRUE(waitUntil([&] { return state().text == "fqst_line/second_line"; })) << state().text;
}

TEST_F(LiveChromiumTest, AChordOfTheDirectionThatTheTextAreaHasIsAppliedToo) {
    startIn("area");
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("rtl");
    expectNoMenu();
    turnRight();
    EXPECT_TRUE(waitUntil([&] { return browser_->hasOpenMenu(); }));
    expectNoMenu();
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] {
        return agent().status().value("lastAction", "") == "Applied RTL in Chromium";
    })) << agent().status();
    EXPECT_EQ(state().direction, "rtl");
}

TEST_F(LiveChromiumTest, AChordTurnsAFieldOfOneLine) {
    startIn("line");
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("rtl");
    expectNoMenu();
}

TEST_F(LiveChromiumTest, AChordTurnsTheParagraphAtTheCursorOfAPageThatIsEditedAndNoOther) {
    startIn("rich");
    EXPECT_EQ(state().direction, "ltr,ltr,ltr");
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("ltr,rtl,ltr");
    expectNoMenu();
    turnLeft();
    expectSaid("Applied LTR in Chromium");
    expectDirection("ltr,ltr,ltr");
}

TEST_F(LiveChromiumTest, AMenuThatIsOpenAlreadyIsLeftAlone) {
    startIn("area");
    desktop().keyboard().tap(Key::menu);
    ASSERT_TRUE(waitUntil([&] { return browser_->showsMenu(); }));
    turnRight();
    expectSaid("Close the open menu and try again");
    EXPECT_TRUE(browser_->hasOpenMenu());
    desktop().keyboard().tap(Key::escape);
    expectNoMenu();
    EXPECT_EQ(state().direction, "ltr");
    turnRight();
    expectDirection("rtl");
}

TEST_F(LiveChromiumTest, ABrowserThatHangsHoldsNobodyElseUp) {
    using Clock = std::chrono::steady_clock;
    require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
    startTyping(editors().front());
    browser_.emplace(required(LiveBrowser::start(desktop(), "area")));
    turnRight();
    expectDirection("rtl");
    expectSaid("Applied RTL in Chromium");
    browser_->process().signal(SIGSTOP);
    const auto begin = Clock::now();
    turnLeft();
    EXPECT_TRUE(agent().status().is_object());
    EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds{1500});
    expectSaid("Place the cursor in an editable text field on the website");
    ASSERT_TRUE(agent().bringToFront(editor().pid()));
    desktop().keyboard().tapWith({Key::leftShift}, Key::b);
    expectEditorText("b");
    browser_->process().signal(SIGCONT);
    ASSERT_TRUE(agent().bringToFront(browser_->pid()));
    EXPECT_EQ(state().direction, "rtl");
    turnLeft();
    expectDirection("ltr");
}

/// A browser whose page is busy for a while, so that the menu of a chord opens late.
class LiveBusyChromiumTest : public LiveChromiumTest {
protected:
    void chordIntoBusyPage() {
        startIn("area");
        browser_->signalPages(SIGSTOP);
        turnRight();
    }

    /// The page runs again, and the menu opens; it may be closed before it has been seen here.
    void expectMenuCloses() {
        browser_->signalPages(SIGCONT);
        static_cast<void>(waitUntil([&] { return browser_->hasOpenMenu(); }, std::chrono::milliseconds{2000},
                                    std::chrono::milliseconds{1}));
        expectNoMenu();
        EXPECT_TRUE(holdsFor(std::chrono::milliseconds{1000}, [&] { return !browser_->hasOpenMenu(); }));
    }
};

TEST_F(LiveBusyChromiumTest, AMenuThatOpensAfterTheAttemptGaveUpIsClosed) {
    chordIntoBusyPage();
    expectSaid("The direction menu is unavailable in this editor");
    expectMenuCloses();
    desktop().keyboard().tap(Key::q);
    expectText("fqst_line/second_line");
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("rtl");
}

TEST_F(LiveBusyChromiumTest, AMenuThatOpensWhileTheUserTypesIsClosedAndTheTextGetsTheLetters) {
    chordIntoBusyPage();
    desktop().keyboard().type("shalom", std::chrono::milliseconds{40});
    expectMenuCloses();
    expectText("fshalomst_line/second_line");
    EXPECT_EQ(state().direction, "ltr");
}

/// The whole browser hangs, from a moment of the chord until the attempt has ended.
class LiveHangingChromiumTest : public LiveChromiumTest, public testing::WithParamInterface<int> {};

TEST_P(LiveHangingChromiumTest, ChordLeavesNoMenuBehind) {
    startIn("area");
    turnRight();
    std::this_thread::sleep_for(std::chrono::milliseconds{GetParam()}); // into the attempt
    browser_->process().signal(SIGSTOP);
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("lastAction") != ""; }));
    browser_->process().signal(SIGCONT);
    // A menu that opens late takes the keys until it has been closed.
    EXPECT_TRUE(
        waitUntil([&] { return holdsFor(std::chrono::milliseconds{1000}, [&] { return !browser_->hasOpenMenu(); }); }));
    desktop().keyboard().tap(Key::q);
    EXPECT_TRUE(waitUntil([&] { return state().text.starts_with("fq"); })) << state();
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, LiveHangingChromiumTest, testing::Values(0, 10, 25, 45, 70, 100));

/// Somebody types on right after a chord, at a moment of the attempt.
class LiveFastTypistTest : public LiveChromiumTest, public testing::WithParamInterface<int> {};

/// A letter that meets the open menu is lost in it; those after it reach the text.
TEST_P(LiveFastTypistTest, TypesOnAndNoMenuStays) {
    startIn("area");
    turnRight();
    std::this_thread::sleep_for(std::chrono::milliseconds{GetParam()}); // into the attempt
    desktop().keyboard().type("quillane", std::chrono::milliseconds{120});
    expectNoMenu();
    desktop().keyboard().type("now");
    EXPECT_TRUE(waitUntil([&] { return state().text.find("nowst_line") != std::string::npos; })) << state();
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, LiveFastTypistTest, testing::Values(0, 10, 25, 45, 70, 100, 150));

/// A browser that makes no accessibility tree until somebody asks for it.
class LiveSleepingChromiumTest : public LiveChromiumTest {
protected:
    void openBrowser() {
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        browser_.emplace(required(LiveBrowser::start(desktop(), "area", LiveBrowser::Tree::onDemand)));
    }

    [[nodiscard]] bool isAwake() { return desktop().accessibility().focusedEditor(browser_->pid()).has_value(); }
};

TEST_F(LiveSleepingChromiumTest, IsAsleepAndWokenByTheAgentThatStarts) {
    openBrowser();
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{1000}, [&] { return !isAwake(); }));
    startAgent();
    EXPECT_TRUE(waitUntil([&] { return isAwake(); }));
    turnRight();
    expectDirection("rtl");
    expectSaid("Applied RTL in Chromium");
    expectNoMenu();
}

TEST_F(LiveSleepingChromiumTest, IsWokenWhenItComesToTheFront) {
    startAgent();
    openBrowser();
    EXPECT_TRUE(waitUntil([&] { return isAwake(); }));
    turnRight();
    expectDirection("rtl");
    expectSaid("Applied RTL in Chromium");
    expectNoMenu();
}

class LiveChromiumWithoutEditorTest : public LiveChromiumTest, public testing::WithParamInterface<const char*> {};

TEST_P(LiveChromiumWithoutEditorTest, AsksForAPlaceAndOpensNoMenu) {
    startIn(GetParam());
    turnRight();
    expectSaid("Place the cursor in an editable text field on the website");
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] { return !browser_->hasOpenMenu(); }));
    EXPECT_EQ(state().direction, "ltr");
}

INSTANTIATE_TEST_SUITE_P(Focus, LiveChromiumWithoutEditorTest, testing::Values("secret", "fixed", "none"),
                         [](const auto& one) { return std::string(one.param); });

} // namespace
} // namespace quillane::live

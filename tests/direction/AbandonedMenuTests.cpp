// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeDirectionTest.hpp"

namespace quillane::testing {
namespace {

using core::UserInput;

/// A browser that opens the menu of an attempt late, or not at all.
class AbandonedMenuTest : public NativeDirectionTest {
protected:
    void SetUp() override {
        openChrome();
        onShowMenu = [] {};
        menu->withAction("AXCancel", [this] {
            menu->present(false);
            return AXActionResult::done;
        });
    }

    void giveUp() {
        apply();
        desktop.queue.advance(1500ms);
        ASSERT_THAT(said, ElementsAre("The direction menu is unavailable in this editor"));
    }

    /// The menu opens, and the application announces it.
    void announceMenu() {
        openMenu();
        desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
    }

    void expectClosed() {
        desktop.queue.advance(240ms);
        EXPECT_FALSE(menu->isPresent());
        EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
        EXPECT_EQ(desktop.queue.timerCount(), 0U);
        EXPECT_FALSE(desktop.accessibility.isObserved(pid, "AXMenuOpened"));
        expectNoPress();
    }

    void expectLeftAlone() {
        desktop.queue.advance(11s);
        EXPECT_TRUE(menu->isPresent());
        EXPECT_EQ(countOf(*menu, "AXCancel"), 0);
        EXPECT_EQ(desktop.queue.timerCount(), 0U);
        expectNoPress();
    }
};

TEST_F(AbandonedMenuTest, OpeningAfterTheAttemptGaveUpIsClosedAtOnce) {
    giveUp();
    desktop.queue.advance(5s);
    announceMenu();
    desktop.settle();
    EXPECT_FALSE(menu->isPresent());
    expectClosed();
}

TEST_F(AbandonedMenuTest, OpeningUnannouncedIsFoundAndClosed) {
    giveUp();
    desktop.queue.advance(5s);
    openMenu();
    expectClosed();
}

TEST_F(AbandonedMenuTest, OpeningAfterTenSecondsIsLeftAlone) {
    giveUp();
    desktop.queue.advance(10'100ms);
    announceMenu();
    expectLeftAlone();
}

/// The moments of an attempt in which something may cancel it, without any input of the user.
class AbandonedMenuMomentTest : public AbandonedMenuTest, public ::testing::WithParamInterface<int> {};

TEST_P(AbandonedMenuMomentTest, OpeningAfterACancellationIsClosed) {
    apply();
    desktop.queue.advance(std::chrono::milliseconds(GetParam()));
    adapter.cancelPending();
    desktop.queue.advance(1s);
    announceMenu();
    expectClosed();
    EXPECT_THAT(said, IsEmpty());
}

TEST_P(AbandonedMenuMomentTest, OpenAtTheCancellationIsClosed) {
    apply();
    desktop.queue.advance(std::chrono::milliseconds(GetParam()));
    announceMenu();
    adapter.cancelPending();
    expectClosed();
    EXPECT_THAT(said, IsEmpty());
}

TEST_P(AbandonedMenuMomentTest, OpeningWhileTheUserTypesIsClosed) {
    apply();
    desktop.queue.advance(std::chrono::milliseconds(GetParam()));
    adapter.interrupt(UserInput::typing);
    desktop.queue.advance(100ms);
    adapter.interrupt(UserInput::typing);
    adapter.interrupt(UserInput::navigation); // in the text
    announceMenu();
    adapter.interrupt(UserInput::typing);
    expectClosed();
}

TEST_P(AbandonedMenuMomentTest, OpenWhileTheUserTypesIsClosed) {
    apply();
    desktop.queue.advance(std::chrono::milliseconds(GetParam()));
    announceMenu();
    adapter.interrupt(UserInput::typing);
    expectClosed();
}

TEST_P(AbandonedMenuMomentTest, ReachedByAnArrowKeyOrAClickIsTheUsers) {
    for (const auto input : {UserInput::navigation, UserInput::command, UserInput::menuRequest}) {
        menu->present(false);
        apply();
        desktop.queue.advance(std::chrono::milliseconds(GetParam()));
        announceMenu();
        adapter.interrupt(input);
        expectLeftAlone();
    }
}

TEST_P(AbandonedMenuMomentTest, RequestedByTheUserIsTheUsers) {
    apply();
    desktop.queue.advance(std::chrono::milliseconds(GetParam()));
    adapter.interrupt(UserInput::menuRequest);
    announceMenu();
    expectLeftAlone();
}

INSTANTIATE_TEST_SUITE_P(Milliseconds, AbandonedMenuMomentTest, ::testing::Values(0, 59, 61, 700, 1499));

TEST_F(AbandonedMenuTest, OpeningAfterAClickIsClosedIfItHoldsTheCommand) {
    apply();
    adapter.interrupt(UserInput::command); // may have opened a menu of another kind
    announceMenu();
    expectClosed();
}

TEST_F(AbandonedMenuTest, AnotherMenuThatAClickOpenedIsLeftAlone) {
    item->with("AXTitle", std::string("New Tab"));
    apply();
    adapter.interrupt(UserInput::command);
    announceMenu();
    expectLeftAlone();
}

TEST_F(AbandonedMenuTest, SeenInABusyApplicationIsClosedWhenItAnswers) {
    giveUp();
    openMenu();
    desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
    desktop.accessibility.stopAnswering(pid);
    desktop.queue.advance(3s);
    EXPECT_TRUE(menu->isPresent());
    desktop.accessibility.answerAgain(pid);
    expectClosed();
}

TEST_F(AbandonedMenuTest, SeenInABusyApplicationIsTheUsersAfterAKeyThatReachesIt) {
    giveUp();
    openMenu();
    desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
    desktop.accessibility.stopAnswering(pid);
    desktop.queue.advance(1s);
    adapter.interrupt(UserInput::navigation);
    desktop.accessibility.answerAgain(pid);
    expectLeftAlone();
}

/// Closing it may take an Escape key, which goes to the application in front.
TEST_F(AbandonedMenuTest, IsNotClosedWhileAnotherApplicationIsInFront) {
    const auto chrome = pid;
    giveUp();
    desktop.withFrontApplication("com.apple.finder");
    announceMenu();
    desktop.queue.advance(2s);
    EXPECT_TRUE(menu->isPresent());
    desktop.workspace.activate(chrome);
    expectClosed();
}

TEST_F(AbandonedMenuTest, TheNextChordUsesTheMenuThatOpens) {
    giveUp();
    said.clear();
    apply();
    announceMenu();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    desktop.queue.advance(11s);
    EXPECT_EQ(countOf(*menu, "AXCancel"), 0);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(AbandonedMenuTest, IsForgottenWithTheAdapter) {
    {
        NativeDirectionAdapter other(services(), report());
        other.apply(WritingDirection::rightToLeft, applications::chrome);
        other.cancelPending();
    }
    announceMenu();
    expectLeftAlone();
}

} // namespace
} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeDirectionTest.hpp"

namespace quillane::testing {
namespace {

/// A browser that has made no accessibility tree when the chord comes. Nobody has woken it.
class SleepingBrowserTest : public NativeDirectionTest {
protected:
    /// The tree is there so long after the browser is woken.
    void openSleeping(std::chrono::milliseconds building, std::string_view bundleID = "com.google.Chrome") {
        openChrome(bundleID);
        desktop.accessibility.sleep(pid, [this, building](const std::function<void()>& makeTree) {
            desktop.queue.postAfter(building, makeTree);
        });
    }

    /// How often the browser was woken, and with which time-out.
    [[nodiscard]] std::vector<std::chrono::milliseconds> wakings() const {
        std::vector<std::chrono::milliseconds> timeouts;
        for (const auto& call : desktop.accessibility.calls()) {
            if (call.what == "AXRole" && call.timeout == 15ms) {
                timeouts.push_back(*call.timeout);
            }
        }
        return timeouts;
    }

    const std::string hint = "Place the cursor in an editable text field on the website";
};

TEST_F(SleepingBrowserTest, IsWokenByTheChordAndTheParagraphTurned) {
    openSleeping(40ms);
    apply();
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(120ms); // one for the tree, one for the menu
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    EXPECT_EQ(wakings().size(), 1U);
}

TEST_F(SleepingBrowserTest, MayTakeThreeStepsToMakeItsTree) {
    openSleeping(170ms);
    apply();
    desktop.queue.advance(179ms);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_EQ(wakings().size(), 3U);
    desktop.queue.advance(61ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(SleepingBrowserTest, ThatStaysAsleepGetsTheHintAfterThreeSteps) {
    openSleeping(1h);
    apply();
    desktop.queue.advance(179ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre(hint));
    EXPECT_EQ(wakings().size(), 3U);
    desktop.queue.advance(2s);
    EXPECT_THAT(said, ElementsAre(hint));
    apply(); // and again, as nothing is pending
    desktop.queue.advance(180ms);
    EXPECT_THAT(said, ElementsAre(hint, hint));
}

TEST_F(SleepingBrowserTest, ASecondChordWhileItIsWokenIsIgnored) {
    openSleeping(100ms);
    apply();
    apply(WritingDirection::leftToRight);
    desktop.queue.advance(1s);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(SleepingBrowserTest, ACancelledChordEndsSilently) {
    openSleeping(100ms);
    apply();
    adapter.cancelPending();
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_EQ(countOf(*editor, "AXShowMenu"), 0);
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(SleepingBrowserTest, AnotherApplicationInFrontEndsTheChordSilently) {
    openSleeping(40ms);
    apply();
    desktop.withFrontApplication("com.apple.finder");
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_EQ(countOf(*editor, "AXShowMenu"), 0);
}

TEST_F(SleepingBrowserTest, AnAdapterThatIsGoneDoesNothing) {
    openSleeping(40ms);
    {
        NativeDirectionAdapter other(services(), report());
        other.apply(WritingDirection::rightToLeft, applications::chrome);
    }
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(SleepingBrowserTest, OnlyTheChromiumFamilyIsWoken) {
    openApplication("com.apple.Safari");
    apply(WritingDirection::rightToLeft, applications::safari);
    EXPECT_THAT(said, ElementsAre(hint));
    BrowserWaker(desktop.accessibility, desktop.workspace).wake();
    EXPECT_THAT(wakings(), IsEmpty());
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

} // namespace
} // namespace quillane::testing

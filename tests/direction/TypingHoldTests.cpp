// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/TypingHold.hpp"

#include "direction/NativeDirectionTest.hpp"
#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"

#include <vector>

namespace quillane::testing {
namespace {

constexpr core::KeyCode a = 0;
constexpr core::KeyCode s = 1;
constexpr core::KeyCode d = 2;
constexpr core::KeyCode returnKey = 36;
constexpr core::KeyCode escape = 53;

/// Somebody types on after a chord in a browser. The keyboard monitor says so to the adapter, as in the program.
class TypingHoldTest : public NativeDirectionTest {
protected:
    void SetUp() override {
        openChrome();
        menu->withAction("AXCancel", [this] {
            typedIntoMenu = typed();
            menu->present(false);
            return AXActionResult::done;
        });
        core::FeatureOptions options;
        options.writingDirection = true;
        monitor.setOptions(options);
        ASSERT_TRUE(monitor.start());
        monitor.onInterruption = [this](core::UserInput what) { adapter.interrupt(what); };
    }

    /// The menu opens, and the application announces it.
    void announceMenu() {
        openMenu();
        desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
    }

    /// The presses that have reached the application.
    [[nodiscard]] std::vector<core::KeyCode> typed() const {
        std::vector<core::KeyCode> keys;
        for (const auto& event : desktop.delivered()) {
            if (event.type == EventType::keyDown) {
                keys.push_back(event.keyCode);
            }
        }
        return keys;
    }

    RTLInput input{desktop.inputSources, desktop.accessibility, desktop.workspace};
    KeyboardMonitor monitor{desktop.platform, input};
    std::vector<core::KeyCode> typedIntoMenu;
};

TEST_F(TypingHoldTest, LettersTypedBeforeTheMenuOpensReachTheTextWhenItIsClosed) {
    onShowMenu = [] {};
    apply();
    desktop.type(a).settle().type(s).settle();
    EXPECT_THAT(typed(), IsEmpty());
    desktop.queue.advance(100ms);
    EXPECT_THAT(typed(), IsEmpty());
    announceMenu();
    desktop.settle();
    EXPECT_FALSE(menu->isPresent());
    EXPECT_THAT(typedIntoMenu, IsEmpty());
    desktop.type(d).settle();
    desktop.queue.advance(20ms);
    EXPECT_THAT(typed(), ElementsAre(a, s, d));
    desktop.type(a);
    EXPECT_THAT(typed(), ElementsAre(a, s, d, a));
    expectNotApplied();
}

TEST_F(TypingHoldTest, LetterTypedWhileTheMenuIsOpenReachesTheTextAtOnce) {
    onShowMenu = [] {};
    apply();
    announceMenu();
    desktop.type(a);
    EXPECT_THAT(typed(), IsEmpty());
    desktop.settle();
    EXPECT_FALSE(menu->isPresent());
    EXPECT_THAT(typedIntoMenu, IsEmpty());
    EXPECT_THAT(typed(), ElementsAre(a));
    EXPECT_FALSE(desktop.tap.isHolding());
}

TEST_F(TypingHoldTest, ReturnIsHeldBackWithTheLettersAroundIt) {
    onShowMenu = [] {};
    apply();
    announceMenu();
    desktop.type(returnKey).type(a).settle();
    EXPECT_FALSE(menu->isPresent()) << "Return has not reached the menu";
    EXPECT_THAT(typed(), ElementsAre(returnKey, a));
}

TEST_F(TypingHoldTest, LetterTypedWhileTheMenuClosesAfterItsCommandWaits) {
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    desktop.type(a).settle();
    desktop.queue.advance(40ms);
    EXPECT_THAT(typed(), IsEmpty());
    menu->present(false);
    desktop.queue.advance(20ms);
    EXPECT_THAT(typed(), ElementsAre(a));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 0);
}

TEST_F(TypingHoldTest, BusyApplicationHasNotClosedItsMenu) {
    apply();
    desktop.queue.advance(60ms);
    desktop.accessibility.stopAnswering(pid);
    desktop.type(a).settle();
    desktop.queue.advance(500ms);
    EXPECT_THAT(typed(), IsEmpty());
    desktop.accessibility.answerAgain(pid);
    menu->present(false);
    desktop.queue.advance(20ms);
    EXPECT_THAT(typed(), ElementsAre(a));
}

TEST_F(TypingHoldTest, MenuThatDoesNotComeHoldsNothingBackForLong) {
    onShowMenu = [] {};
    apply();
    desktop.type(a).settle();
    desktop.queue.advance(1480ms);
    EXPECT_THAT(typed(), IsEmpty());
    desktop.queue.advance(20ms);
    EXPECT_THAT(typed(), ElementsAre(a));
    desktop.type(s);
    EXPECT_THAT(typed(), ElementsAre(a, s));
}

TEST_F(TypingHoldTest, NothingIsHeldBackSoonAfterTheMenuHasClosed) {
    apply();
    EXPECT_TRUE(desktop.tap.isHolding());
    desktop.queue.advance(460ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    EXPECT_TRUE(desktop.tap.isHolding()) << "the menu is still closing";
    menu->present(false);
    desktop.queue.advance(200ms);
    EXPECT_FALSE(desktop.tap.isHolding());
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(TypingHoldTest, MenuThatStaysOpenHoldsNothingBackForLong) {
    apply();
    desktop.queue.advance(1660ms);
    EXPECT_FALSE(desktop.tap.isHolding());
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(TypingHoldTest, EscapeReachesTheMenu) {
    onShowMenu = [] {};
    apply();
    announceMenu();
    desktop.type(escape);
    EXPECT_THAT(typed(), ElementsAre(escape));
    menu->present(false);
    desktop.type(a).settle();
    desktop.queue.advance(20ms);
    EXPECT_THAT(typed(), ElementsAre(escape, a));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 0);
}

TEST_F(TypingHoldTest, ClickLetsGo) {
    onShowMenu = [] {};
    apply();
    desktop.type(a).settle();
    EXPECT_THAT(typed(), IsEmpty());
    desktop.click().settle();
    EXPECT_THAT(typed(), ElementsAre(a));
    EXPECT_FALSE(desktop.tap.isHolding());
}

TEST_F(TypingHoldTest, AnotherApplicationInFrontLetsGo) {
    onShowMenu = [] {};
    apply();
    desktop.type(a).settle();
    desktop.withFrontApplication("com.apple.finder");
    desktop.queue.advance(20ms);
    EXPECT_FALSE(desktop.tap.isHolding());
}

} // namespace
} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/DirectionTest.hpp"
#include "direction/FirefoxDirectionAdapter.hpp"

namespace quillane::testing {
namespace {

using core::UserInput;

/// A text field of 200 units in a page, and the menu "Edit", whose items are made when it opens for the first time.
class FirefoxDirectionTest : public DirectionTest {
protected:
    FirefoxDirectionTest() {
        openApplication("org.mozilla.firefox");
        tree().without("AXMenuBar"); // as on Linux, where each window has its own
        editor = &window->add("AXWebArea").addTextField("AXTextArea").with("AXNumberOfCharacters", std::int64_t{5});
        editor->at({100, 0, 200, 60}).withText([this](const AXTextRange& range) { return place(range); });
        focus(*editor);
        edit = &window->add("AXToolbar").add("AXMenuBar").add("AXUnknown").with("AXTitle", std::string("Edit"));
        edit->with("AXExpanded", false)
            .withAction("AXPress",
                        [this] {
                            onOpen();
                            return AXActionResult::done;
                        })
            .withAction("AXCancel", [this] {
                edit->with("AXExpanded", false);
                return AXActionResult::done;
            });
        copy = &edit->add("AXMenuItem").with("AXTitle", std::string("Copy")).present(false);
        command = &edit->add("AXMenuItem")
                       .with("AXTitle", std::string("Switch Text Direction"))
                       .present(false)
                       .withAction("AXPress", [this] {
                           swap();
                           edit->with("AXExpanded", false);
                           return AXActionResult::done;
                       });
    }

    void openMenu() {
        edit->with("AXExpanded", true);
        copy->present();
        command->present(hasCommand);
    }

    /// Text of five characters on one line, 10 units each.
    [[nodiscard]] std::optional<AXRect> place(const AXTextRange& range) const {
        const double begin = isRightToLeft ? 246 : 104;
        return AXRect{begin + 10.0 * static_cast<double>(range.location), 4, 10.0 * static_cast<double>(range.length),
                      16};
    }

    void begin(WritingDirection direction = WritingDirection::rightToLeft) {
        adapter.apply(direction, *core::supportedApplication("org.mozilla.firefox"));
    }

    void apply(WritingDirection direction = WritingDirection::rightToLeft) {
        begin(direction);
        desktop.queue.advance(4s);
    }

    FirefoxDirectionAdapter adapter{services(), report()};
    FakeElement* editor = nullptr;
    FakeElement* edit = nullptr;
    FakeElement* copy = nullptr;
    FakeElement* command = nullptr;
    bool isRightToLeft = false;
    bool hasCommand = true;
    std::function<void()> onOpen = [this] { openMenu(); };
    std::function<void()> swap = [this] { isRightToLeft = !isRightToLeft; };
};

TEST_F(FirefoxDirectionTest, OpensTheMenuForTheFirstChordOnly) {
    apply();
    EXPECT_TRUE(isRightToLeft);
    apply(WritingDirection::leftToRight);
    EXPECT_FALSE(isRightToLeft);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Firefox", "Applied LTR in Firefox"));
    EXPECT_EQ(countOf(*edit, "AXPress"), 1);
    EXPECT_EQ(countOf(*command, "AXPress"), 2);
    EXPECT_EQ(countOf(*edit, "AXCancel"), 0);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(FirefoxDirectionTest, TextThatRunsThatWayIsNotSwapped) {
    apply(WritingDirection::leftToRight);
    isRightToLeft = true;
    apply();
    EXPECT_THAT(said, ElementsAre("Applied LTR in Firefox", "Applied RTL in Firefox"));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(FirefoxDirectionTest, EveryCallIsBoundedByTheTimeout) {
    apply();
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 150ms) << call.what;
    }
}

TEST_F(FirefoxDirectionTest, CommandInAnotherLanguageIsFound) {
    edit->with("AXTitle", std::string("עריכה"));
    command->with("AXTitle", std::string("היפוך כיוון כתיבה"));
    apply();
    EXPECT_THAT(said, ElementsAre("Applied RTL in Firefox"));
}

TEST_F(FirefoxDirectionTest, MissingCommandIsExplainedAndTheMenuOpensOnce) {
    hasCommand = false;
    apply();
    apply();
    focus(*edit); // as Firefox reports after that
    apply();
    const std::string how =
        "To change direction in Firefox, set bidi.browser.ui to true in about:config and restart Firefox";
    EXPECT_THAT(said, ElementsAre(how, how, how));
    EXPECT_EQ(countOf(*edit, "AXPress"), 1);
    EXPECT_EQ(countOf(*edit, "AXCancel"), 1);
}

TEST_F(FirefoxDirectionTest, PlacesThatComeLateAreAwaited) {
    int asked = 0;
    editor->withText([&](const AXTextRange& range) { return ++asked < 4 ? std::nullopt : place(range); });
    apply();
    EXPECT_THAT(said, ElementsAre("Applied RTL in Firefox"));
}

TEST_F(FirefoxDirectionTest, TextThatDoesNotShowItsDirectionIsNotSwapped) {
    for (const auto& place : {AXRect{104, 4, 190, 16}, AXRect{180, 4, 40, 16}, AXRect{100, 0, 200, 60}}) {
        said.clear();
        editor->withText([&](const AXTextRange&) { return place; });
        apply();
        EXPECT_THAT(said, ElementsAre("The editor does not expose the cursor position — direction was not changed"));
    }
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

/// Nineteen characters on a full line and three on the last.
TEST_F(FirefoxDirectionTest, LastLineOfAWrappedTextShowsItsDirection) {
    editor->with("AXNumberOfCharacters", std::int64_t{22}).withText([&](const AXTextRange& range) {
        const auto end = range.location + range.length;
        if (range.location < 19) {
            return end <= 19 ? AXRect{104 + 10.0 * static_cast<double>(range.location), 4,
                                      10.0 * static_cast<double>(range.length), 16}
                             : AXRect{104, 4, 190, 32};
        }
        const double begin = isRightToLeft ? 266 : 104;
        return AXRect{begin + 10.0 * static_cast<double>(range.location - 19), 20,
                      10.0 * static_cast<double>(range.length), 16};
    });
    apply();
    apply(WritingDirection::leftToRight);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Firefox", "Applied LTR in Firefox"));
    EXPECT_EQ(countOf(*command, "AXPress"), 2);
}

TEST_F(FirefoxDirectionTest, SwapWithoutEffectIsReportedAndNotRepeated) {
    swap = [] {};
    apply();
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
    EXPECT_EQ(countOf(*command, "AXPress"), 1);
}

TEST_F(FirefoxDirectionTest, MenuThatDoesNotOpenIsReported) {
    onOpen = [] {};
    apply();
    EXPECT_THAT(said, ElementsAre("The direction menu is unavailable in this editor"));
}

TEST_F(FirefoxDirectionTest, MenuThatCannotBePressedIsReported) {
    edit->withAction("AXPress", [] { return AXActionResult::failed; });
    apply();
    apply();
    const std::string text = "Firefox cannot open the direction menu for this field";
    EXPECT_THAT(said, ElementsAre(text, text)) << "the attempt is over";
}

TEST_F(FirefoxDirectionTest, CommandThatFailsIsReportedAndTheMenuClosed) {
    command->withAction("AXPress", [] { return AXActionResult::failed; });
    apply();
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
    EXPECT_EQ(countOf(*edit, "AXCancel"), 1);
    EXPECT_FALSE(isRightToLeft);
}

TEST_F(FirefoxDirectionTest, WindowWithoutTheMenuIsReported) {
    edit->with("AXTitle", std::string("View"));
    apply();
    EXPECT_THAT(said, ElementsAre("This editor does not offer a paragraph direction command"));
}

TEST_F(FirefoxDirectionTest, FieldsThatAreNotEditorsGetTheHint) {
    focus(window->addTextField()); // the address bar
    apply();
    editor->with("AXSubrole", std::string("AXSecureTextField"));
    focus(*editor);
    apply();
    const std::string hint = "Place the cursor in an editable text field on the website";
    EXPECT_THAT(said, ElementsAre(hint, hint));
}

TEST_F(FirefoxDirectionTest, CancelledAttemptEndsSilentlyAndClosesItsMenuEvenLate) {
    for (const bool isLate : {false, true}) {
        copy->present(false);
        command->present(false);
        onOpen = [] {};
        begin();
        isLate ? void() : openMenu();
        adapter.cancelPending();
        desktop.queue.advance(2s);
        isLate ? openMenu() : void();
        desktop.queue.advance(1s);
        EXPECT_EQ(countOf(*edit, "AXCancel"), isLate ? 2 : 1);
    }
    EXPECT_THAT(said, IsEmpty());
    EXPECT_FALSE(isRightToLeft);
}

TEST_F(FirefoxDirectionTest, MenuThatTheUserTouchesStaysAndTypingClosesIt) {
    onOpen = [] {};
    begin();
    openMenu();
    adapter.interrupt(UserInput::navigation);
    desktop.queue.advance(11s);
    EXPECT_EQ(countOf(*edit, "AXCancel"), 0);
    edit->with("AXExpanded", false);
    copy->present(false);
    command->present(false);
    begin();
    openMenu();
    adapter.interrupt(UserInput::typing);
    desktop.queue.advance(1s);
    EXPECT_EQ(countOf(*edit, "AXCancel"), 1);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(FirefoxDirectionTest, AnotherApplicationInFrontEndsTheAttempt) {
    onOpen = [] {};
    begin();
    desktop.withFrontApplication("com.apple.finder");
    openMenu();
    desktop.queue.advance(2s);
    EXPECT_EQ(countOf(*command, "AXPress"), 0);
    EXPECT_EQ(countOf(*edit, "AXCancel"), 0) << "closing takes a key, which would go to the other application";
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(FirefoxDirectionTest, AsksNineTimesWhereTheTextIs) {
    editor->withText([](const AXTextRange&) { return std::nullopt; });
    begin();
    desktop.queue.advance(479ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("The editor does not expose the cursor position — direction was not changed"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(FirefoxDirectionTest, WaitsForTheMenuThroughTwentyFourRuns) {
    onOpen = [] {};
    begin();
    desktop.queue.advance(1439ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("The direction menu is unavailable in this editor"));
}

TEST_F(FirefoxDirectionTest, WaitsForTheSwapThroughTwentyFourRuns) {
    swap = [] {};
    begin();
    desktop.queue.advance(60ms); // the menu has opened, and the command is pressed
    desktop.queue.advance(1439ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
}

TEST_F(FirefoxDirectionTest, LooksThroughFiveHundredElementsOfTheWindow) {
    for (const int count : {495, 496}) { // besides the window, the page and two toolbars, and the bar in the second
        openApplication("org.mozilla.firefox");
        tree().without("AXMenuBar");
        auto& page = window->add("AXWebArea");
        window->add("AXToolbar");
        auto& toolbar = window->add("AXToolbar");
        fill(*window, count);
        auto& title = toolbar.add("AXMenuBar").add("AXUnknown").with("AXTitle", std::string("Edit"));
        title.add("AXMenuItem").with("AXTitle", std::string("Switch Text Direction")).withAction("AXPress", [this] {
            swap();
            return AXActionResult::done;
        });
        auto& field = page.addTextField("AXTextArea").with("AXNumberOfCharacters", std::int64_t{5});
        field.at({100, 0, 200, 60}).withText([this](const AXTextRange& range) { return place(range); });
        focus(field);
        isRightToLeft = false;
        apply();
    }
    EXPECT_THAT(said,
                ElementsAre("Applied RTL in Firefox", "This editor does not offer a paragraph direction command"));
}

TEST_F(FirefoxDirectionTest, LooksThroughHundredAndTwentyItemsOfTheMenu) {
    for (const int count : {118, 119}) { // besides the menu and the command
        openApplication("org.mozilla.firefox");
        auto& page = window->add("AXWebArea");
        auto& bar = tree().add("AXMenuBar");
        tree().with("AXMenuBar", bar); // as on macOS
        auto& title = bar.add("AXMenuBarItem").with("AXTitle", std::string("Edit"));
        fill(title, count);
        title.add("AXMenuItem").with("AXTitle", std::string("Switch Text Direction")).withAction("AXPress", [this] {
            swap();
            return AXActionResult::done;
        });
        auto& field = page.addTextField("AXTextArea").with("AXNumberOfCharacters", std::int64_t{5});
        field.at({100, 0, 200, 60}).withText([this](const AXTextRange& range) { return place(range); });
        focus(field);
        isRightToLeft = false;
        apply();
    }
    EXPECT_THAT(said, ElementsAre("Applied RTL in Firefox",
                                  "To change direction in Firefox, set bidi.browser.ui to true in about:config and "
                                  "restart Firefox"));
}

} // namespace
} // namespace quillane::testing

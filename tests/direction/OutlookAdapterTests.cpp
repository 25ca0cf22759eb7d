// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/OutlookAdapter.hpp"

#include "direction/DirectionTest.hpp"

namespace quillane::testing {
namespace {

/// A message being written in Outlook: a subject, a body in a web area, and a formatting toolbar.
class OutlookDirectionTest : public DirectionTest {
protected:
    OutlookDirectionTest() : adapter(services(), report()) {
        openApplication("com.microsoft.Outlook");
        toolbar = &window->add("AXToolbar").with("AXTitle", std::string("Formatting Toolbar"));
        rtl = &toolbar->add("AXButton").with("AXTitle", std::string("Right to Left")).withAction("AXPress");
        ltr = &toolbar->add("AXButton").with("AXTitle", std::string("Left to Right")).withAction("AXPress");
        page = &window->add("AXWebArea").with("AXURL", std::string("outlook-mobile-compose:1"));
        body = &page->add("AXGroup").addTextField("AXTextArea");
        focus(*body);
    }

    /// The buttons move behind the overflow button, into a popover that is not open yet.
    void narrow() {
        toolbar->with("AXTitle", std::string()).with("AXDescription", std::string("Formatting Toolbar"));
        rtl->present(false);
        ltr->present(false);
        overflow = &toolbar->add("AXButton").with("AXTitle", std::string("See more items")).withAction("AXPress");
        popover =
            &tree().add("AXWindow").with("AXIdentifier", std::string("RoosterToolbarPopoverWindow(3)")).present(false);
        hiddenRtl = &popover->add("AXGroup")
                         .add("AXButton")
                         .with("AXTitle", std::string("Right to Left"))
                         .withAction("AXPress");
    }

    void apply(WritingDirection direction = WritingDirection::rightToLeft) {
        adapter.apply(direction, applications::outlook);
    }

    OutlookAdapter adapter;
    FakeElement* toolbar = nullptr;
    FakeElement* rtl = nullptr;
    FakeElement* ltr = nullptr;
    FakeElement* page = nullptr;
    FakeElement* body = nullptr;
    FakeElement* overflow = nullptr;
    FakeElement* popover = nullptr;
    FakeElement* hiddenRtl = nullptr;
};

constexpr auto cancelled = "Direction change cancelled after focus changed or another key was pressed";

TEST_F(OutlookDirectionTest, PressesTheButtonOfTheToolbar) {
    apply();
    apply(WritingDirection::leftToRight);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook", "Applied LTR in Outlook"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 1);
    EXPECT_EQ(countOf(*ltr, "AXPress"), 1);
}

TEST_F(OutlookDirectionTest, AButtonThatFailsIsReported) {
    rtl->with("AXEnabled", false);
    apply();
    EXPECT_THAT(said, ElementsAre("Outlook did not apply the direction command"));
}

TEST_F(OutlookDirectionTest, AMessageWithoutAToolbarIsPlainText) {
    toolbar->present(false);
    apply();
    EXPECT_THAT(said, ElementsAre("Formatting toolbar not found — the message must use HTML"));
}

TEST_F(OutlookDirectionTest, AReadingPaneAndOtherPlacesGetTheHint) {
    const std::string hint = "Place the cursor in the Outlook message body or subject";
    page->with("AXURL", std::string("about:blank"));
    apply();
    page->without("AXURL");
    apply();
    focus(window->addTextField());
    apply();
    desktop.accessibility.focus(pid, nullptr);
    apply();
    EXPECT_THAT(said, ElementsAre(hint, hint, hint, hint));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(OutlookDirectionTest, TheWebAreaMustBeWithinTwelveSteps) {
    auto* deep = page;
    for (int step = 0; step < 11; ++step) {
        deep = &deep->add("AXGroup");
    }
    focus(deep->addTextField("AXTextArea"));
    apply();
    focus(deep->add("AXGroup").addTextField("AXTextArea"));
    apply();
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook", "Place the cursor in the Outlook message body or subject"));
}

TEST_F(OutlookDirectionTest, TheSubjectHasItsContextMenu) {
    auto& subject = window->addTextField()
                        .with("AXIdentifier", std::string("subjectTextField"))
                        .with("AXSelectedTextRange", AXTextRange{0, 0});
    auto& menu = tree().add("AXMenu").present(false);
    auto& command = menu.add("AXMenuItem")
                        .with("AXTitle", std::string("Writing Direction"))
                        .add("AXMenu")
                        .add("AXMenuItem")
                        .with("AXTitle", std::string("Right to Left"))
                        .withAction("AXPress");
    subject.withAction("AXShowMenu", [&] {
        menu.present();
        return AXActionResult::done;
    });
    focus(subject);
    apply();
    desktop.queue.advance(60ms);
    EXPECT_EQ(countOf(command, "AXPress"), 1);
    subject.settable("AXValue", false);
    apply();
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook", "Place the cursor in the Outlook subject field"));
}

TEST_F(OutlookDirectionTest, GoesThroughTheOverflowPopover) {
    narrow();
    apply();
    EXPECT_EQ(countOf(*overflow, "AXPress"), 1);
    desktop.queue.advance(80ms);
    EXPECT_THAT(said, IsEmpty());
    popover->present();
    focus(popover->add("AXGroup"));
    desktop.queue.advance(80ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook"));
    EXPECT_EQ(countOf(*hiddenRtl, "AXPress"), 1);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(OutlookDirectionTest, LooksForThePopoverEightTimes) {
    narrow();
    apply();
    desktop.queue.advance(639ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("Direction button not found in the menu — press Esc to close it"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(OutlookDirectionTest, AnOverflowThatIsMissingOrFailsIsReported) {
    narrow();
    overflow->with("AXEnabled", false);
    apply();
    overflow->present(false);
    apply();
    EXPECT_THAT(said, ElementsAre("Could not open additional formatting options",
                                  "Direction buttons were not found in this version of Outlook"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(OutlookDirectionTest, AWaitThatIsCancelledSaysSoInItsNextStep) {
    narrow();
    apply();
    adapter.cancelPending();
    EXPECT_THAT(said, IsEmpty());
    popover->present();
    desktop.queue.advance(1s);
    EXPECT_THAT(said, ElementsAre(cancelled));
    apply(); // what was cancelled does not reach the next attempt
    desktop.queue.advance(80ms);
    EXPECT_EQ(said.back(), "Applied RTL in Outlook");
}

TEST_F(OutlookDirectionTest, TheLastChordTakesAWaitOver) {
    narrow();
    auto& hiddenLtr = popover->add("AXButton").with("AXTitle", std::string("Left to Right")).withAction("AXPress");
    apply();
    adapter.cancelPending();
    apply(WritingDirection::leftToRight);
    popover->present();
    desktop.queue.advance(1s);
    EXPECT_THAT(said, ElementsAre("Applied LTR in Outlook"));
    EXPECT_EQ(countOf(*hiddenRtl, "AXPress"), 0);
    EXPECT_EQ(countOf(hiddenLtr, "AXPress"), 1);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(OutlookDirectionTest, CancellingNothingSaysNothing) {
    adapter.cancelPending();
    narrow();
    apply();
    popover->present();
    desktop.queue.advance(80ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook"));
}

TEST_F(OutlookDirectionTest, FocusElsewhereAndOtherApplicationsCancelTheWait) {
    narrow();
    apply();
    focus(window->addTextField());
    desktop.queue.advance(80ms);
    focus(*body);
    apply();
    desktop.withFrontApplication("com.apple.finder");
    desktop.queue.advance(80ms);
    EXPECT_THAT(said, ElementsAre(cancelled, cancelled));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(OutlookDirectionTest, LooksThroughTwoHundredAndFortyElementsForTheToolbar) {
    toolbar->present(false);
    fill(*window, 237); // besides the window, the page and the toolbar
    auto* last = &window->add("AXToolbar").with("AXTitle", std::string("Formatting Toolbar"));
    last->add("AXButton").with("AXTitle", std::string("Right to Left")).withAction("AXPress");
    apply();
    last->present(false);
    fill(*window, 1);
    last = &window->add("AXToolbar").with("AXTitle", std::string("Formatting Toolbar"));
    last->add("AXButton").with("AXTitle", std::string("Right to Left")).withAction("AXPress");
    apply();
    EXPECT_THAT(said,
                ElementsAre("Applied RTL in Outlook", "Formatting toolbar not found — the message must use HTML"));
}

TEST_F(OutlookDirectionTest, OnlyButtonsArePressed) {
    rtl->with("AXRole", std::string("AXMenuItem"));
    apply();
    narrow();
    overflow->with("AXRole", std::string("AXMenuItem"));
    apply();
    const std::string missing = "Direction buttons were not found in this version of Outlook";
    EXPECT_THAT(said, ElementsAre(missing, missing));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(OutlookDirectionTest, OnlyAPopoverOfTheToolbarIsSearched) {
    narrow();
    popover->present();
    const std::vector<std::pair<std::string, std::string>> others{{"AXGroup", "RoosterToolbarPopoverWindow(3)"},
                                                                  {"AXWindow", "ReminderWindow(3)"}};
    for (const auto& [role, identifier] : others) {
        said.clear();
        popover->with("AXRole", role).with("AXIdentifier", identifier);
        apply();
        desktop.queue.advance(1s);
        EXPECT_THAT(said, ElementsAre("Direction button not found in the menu — press Esc to close it"));
    }
    EXPECT_EQ(countOf(*hiddenRtl, "AXPress"), 0);
}

TEST_F(OutlookDirectionTest, EveryCallIsBoundedByTheTimeout) {
    narrow();
    apply();
    popover->present();
    desktop.queue.advance(80ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Outlook"));
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 150ms) << call.what;
    }
}

TEST_F(OutlookDirectionTest, DoesNothingWhenAnotherApplicationIsInFront) {
    desktop.withFrontApplication("com.apple.finder");
    apply();
    EXPECT_THAT(said, IsEmpty());
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
}

} // namespace
} // namespace quillane::testing

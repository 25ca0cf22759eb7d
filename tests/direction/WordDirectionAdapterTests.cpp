// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/WordDirectionAdapter.hpp"

#include "direction/DirectionTest.hpp"

namespace quillane::testing {
namespace {

/// A document in Word with a ribbon of two tabs; the direction buttons are on Home.
class WordDirectionTest : public DirectionTest {
protected:
    WordDirectionTest() : adapter(services(), report()) {
        openApplication("com.microsoft.Word");
        ribbon = &window->add("AXTabGroup").with("AXDescription", std::string("ribbon"));
        home = &ribbon->add("AXRadioButton").with("AXTitle", std::string("Home")).withAction("AXPress", [this] {
            onHome();
            return homeResult;
        });
        auto& group = window->add("AXGroup");
        rtl = &group.add("AXCheckBox").with("AXTitle", std::string("Right-to-Left")).withAction("AXPress");
        ltr = &group.add("AXButton").with("AXDescription", std::string(" Left-to-Right ")).withAction("AXPress");
        editor = &window->addTextField("AXTextArea").with("AXDescription", std::string("Page 12 content"));
        focus(*editor);
    }

    void showButtons(bool shown) {
        rtl->present(shown);
        ltr->present(shown);
    }

    void apply(WritingDirection direction = WritingDirection::rightToLeft) {
        adapter.apply(direction, applications::word);
    }

    WordDirectionAdapter adapter;
    FakeElement* ribbon = nullptr;
    FakeElement* home = nullptr;
    FakeElement* rtl = nullptr;
    FakeElement* ltr = nullptr;
    FakeElement* editor = nullptr;
    std::function<void()> onHome = [] {};
    AXActionResult homeResult = AXActionResult::done;
};

constexpr auto openHome = "Open the Home tab in Word to show paragraph direction buttons";

TEST_F(WordDirectionTest, PressesTheButtonOfTheDirection) {
    apply();
    apply(WritingDirection::leftToRight);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Word", "Applied LTR in Word"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 1);
    EXPECT_EQ(countOf(*ltr, "AXPress"), 1);
    EXPECT_EQ(countOf(*home, "AXPress"), 0);
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 150ms) << call.what;
    }
}

TEST_F(WordDirectionTest, ADisabledButtonIsReported) {
    rtl->with("AXEnabled", false);
    apply();
    EXPECT_THAT(said, ElementsAre("Word cannot change direction in this document"));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(WordDirectionTest, AnythingButAPageGetsTheHint) {
    const std::string hint = "Place the cursor in the Word document body";
    editor->with("AXDescription", std::string("Comment"));
    apply();
    editor->with("AXDescription", std::string("Page 1 content")).settable("AXValue", false);
    apply();
    editor->settable("AXValue");
    auto& other = tree().add("AXWindow");
    tree().with("AXFocusedWindow", other);
    apply();
    tree().without("AXFocusedWindow");
    apply();
    desktop.accessibility.focus(pid, nullptr);
    apply();
    EXPECT_THAT(said, ElementsAre(hint, hint, hint, hint, hint));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(WordDirectionTest, OpensTheHomeTabAndPressesTheButtonWhenItIsThere) {
    showButtons(false);
    apply();
    EXPECT_EQ(countOf(*home, "AXPress"), 1);
    desktop.queue.advance(120ms);
    EXPECT_THAT(said, IsEmpty());
    showButtons(true);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Word"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(WordDirectionTest, LooksForTheButtonElevenTimes) {
    showButtons(false);
    apply();
    desktop.queue.advance(659ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre(openHome));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(WordDirectionTest, AsksForTheHomeTabWhenItCannotBeOpened) {
    showButtons(false);
    homeResult = AXActionResult::failed;
    apply();
    ribbon->with("AXDescription", std::string("toolbox"));
    apply();
    EXPECT_THAT(said, ElementsAre(openHome, openHome));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

class WordWaitTest : public WordDirectionTest, public ::testing::WithParamInterface<int> {};

TEST_P(WordWaitTest, EndsSilentlyWhenSomethingElseComes) {
    showButtons(false);
    apply();
    switch (GetParam()) {
    case 0:
        focus(window->addTextField());
        break;
    case 1:
        tree().with("AXFocusedWindow", tree().add("AXWindow"));
        break;
    case 2:
        desktop.withFrontApplication("com.apple.finder");
        break;
    default:
        adapter.cancelPending();
    }
    showButtons(true);
    desktop.queue.advance(2s);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_EQ(countOf(*rtl, "AXPress"), 0);
}

INSTANTIATE_TEST_SUITE_P(OtherFieldOtherWindowOtherApplicationCancelled, WordWaitTest, ::testing::Range(0, 4));

TEST_F(WordDirectionTest, DoesNothingWhenAnotherApplicationIsInFront) {
    desktop.withFrontApplication("com.apple.finder");
    apply();
    EXPECT_THAT(said, IsEmpty());
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
}

TEST_F(WordDirectionTest, LooksThroughSixHundredElements) {
    fill(*window, 594); // besides the window, the ribbon, the group, the page, the tab and the button
    apply();
    EXPECT_THAT(said, ElementsAre("Applied RTL in Word"));
    fill(*window, 1);
    apply();
    desktop.queue.advance(1s);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Word", openHome));
}

TEST_F(WordDirectionTest, OnlyAButtonIsPressed) {
    for (const auto* role : {"AXButton", "AXCheckBox", "AXRadioButton"}) {
        said.clear();
        rtl->with("AXRole", std::string(role));
        apply();
        EXPECT_THAT(said, ElementsAre("Applied RTL in Word")) << role;
    }
    for (const auto* role : {"AXStaticText", "AXMenuItem", "AXGroup"}) {
        said.clear();
        rtl->with("AXRole", std::string(role));
        apply();
        desktop.queue.advance(1s);
        EXPECT_THAT(said, ElementsAre(openHome)) << role;
    }
    EXPECT_EQ(countOf(*rtl, "AXPress"), 3);
}

TEST_F(WordDirectionTest, OnlyTheHomeTabOfTheRibbonIsOpened) {
    showButtons(false);
    ribbon->with("AXRole", std::string("AXGroup"));
    auto& other = window->add("AXButton").with("AXTitle", std::string("Home")).withAction("AXPress");
    apply();
    EXPECT_THAT(said, ElementsAre(openHome));
    EXPECT_EQ(countOf(*home, "AXPress"), 0);
    EXPECT_EQ(countOf(other, "AXPress"), 0);
}

} // namespace
} // namespace quillane::testing

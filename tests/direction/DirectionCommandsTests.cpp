// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/DirectionCommands.hpp"

#include "direction/AX.hpp"
#include "direction/DirectionTest.hpp"

namespace quillane::testing {
namespace {

class DirectionCommandsTest : public DirectionTest {
protected:
    DirectionCommands commands{services(), [this] { return canApply; }, report()};
    bool canApply = true;
};

TEST_F(DirectionCommandsTest, EachApplicationHasItsAdapter) {
    const std::vector<std::pair<std::string, std::string>> hints{
        {"com.microsoft.Outlook", "Place the cursor in the Outlook message body or subject"},
        {"com.google.Chrome", "Place the cursor in an editable text field on the website"},
        {"com.apple.Safari", "Place the cursor in an editable text field on the website"},
        {"com.apple.TextEdit", "Place the cursor in the TextEdit document body"},
        {"com.apple.Notes", "Place the cursor in the Notes note body"},
        {"com.apple.mail", "Place the cursor in the Mail message body or subject"},
        {"com.microsoft.Word", "Place the cursor in the Word document body"},
        {"org.libreoffice.script", "Place the cursor in a paragraph in LibreOffice Writer"}};
    for (const auto& [bundleID, hint] : hints) {
        openApplication(bundleID);
        said.clear();
        commands.apply(WritingDirection::rightToLeft);
        desktop.queue.advance(180ms); // a browser may have to be woken
        EXPECT_THAT(said, ElementsAre(hint)) << bundleID;
    }
}

TEST_F(DirectionCommandsTest, EachRowHasAnAdapterAndItsHint) {
    for (const auto& row : core::supportedApplications()) {
        openApplication(row.bundleID);
        window->with("AXTitle", "document - " + std::string(row.displayName));
        focus(window->add("AXButton"));
        said.clear();
        commands.apply(WritingDirection::rightToLeft);
        desktop.queue.advance(180ms); // a browser may have to be woken
        EXPECT_THAT(said, ElementsAre(row.placementHint.rendered(core::AppLanguage::english))) << row.displayName;
    }
}

TEST_F(DirectionCommandsTest, CancellingReachesEveryAdapter) {
    const auto expectSilence = [&](const std::string& application) {
        commands.apply(WritingDirection::rightToLeft);
        commands.cancelPending();
        desktop.queue.advance(2s);
        EXPECT_THAT(said, IsEmpty()) << application;
    };
    openApplication("com.google.Chrome"); // which has to be woken
    expectSilence("Chrome");
    openApplication("org.libreoffice.script");
    desktop.accessibility.stopAnswering(pid);
    expectSilence("LibreOffice");
    openApplication("com.microsoft.Word"); // whose Home tab has to be opened
    auto& ribbon = window->add("AXTabGroup").with("AXDescription", "ribbon");
    ribbon.add("AXRadioButton").with("AXTitle", "Home").withAction("AXPress");
    focus(window->addTextField("AXTextArea").with("AXDescription", "Page 1 content"));
    expectSilence("Word");
}

TEST_F(DirectionCommandsTest, SaysNothingElsewhereOrWhileItCannotBeApplied) {
    commands.apply(WritingDirection::rightToLeft);
    for (const auto* bundleID : {"com.apple.Mail", "com.apple.finder"}) {
        openApplication(bundleID);
        commands.apply(WritingDirection::rightToLeft);
    }
    openApplication("com.apple.mail");
    canApply = false;
    commands.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(DirectionCommandsTest, ATestSaysWhatItNeeds) {
    canApply = false;
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    canApply = true;
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    EXPECT_THAT(said, ElementsAre("Enable the direction feature and grant the required permissions",
                                  "Open the selected app and place the cursor in a text field"));
}

TEST_F(DirectionCommandsTest, ATestComesAQuarterOfASecondAfterTheActivation) {
    openApplication("com.apple.Notes");
    desktop.withFrontApplication("com.quillane.app");
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.settle();
    EXPECT_EQ(desktop.frontPid(), pid);
    desktop.queue.advance(249ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("Place the cursor in the Notes note body"));
}

TEST_F(DirectionCommandsTest, ATestEndsSilentlyWhenItsTargetIsNotInFront) {
    openApplication("com.apple.Notes");
    desktop.withFrontApplication("com.example.other"); // so that this program has no place to yield
    desktop.workspace.answerActivation(fakes::FakeWorkspace::Activation::refused);
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.queue.advance(1s);
    desktop.workspace.answerActivation(fakes::FakeWorkspace::Activation::late, 251ms);
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.queue.advance(1s);
    EXPECT_EQ(desktop.frontPid(), pid); // too late for the test
    EXPECT_THAT(said, IsEmpty());
    desktop.withFrontApplication("com.quillane.app");
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.workspace.quit(pid);
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(DirectionCommandsTest, ATestLeavesTheApplicationAloneThatIsInFrontInstead) {
    openApplication("com.apple.Notes");
    desktop.withFrontApplication("com.apple.TextEdit");
    desktop.workspace.answerActivation(fakes::FakeWorkspace::Activation::refused);
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(DirectionCommandsTest, ActivationThatComesLateIsInTimeForATest) {
    openApplication("com.apple.Notes");
    desktop.withFrontApplication("com.example.other");
    desktop.workspace.answerActivation(fakes::FakeWorkspace::Activation::late, 240ms);
    commands.test(WritingDirection::rightToLeft, "com.apple.Notes");
    desktop.queue.advance(250ms);
    EXPECT_THAT(said, ElementsAre("Place the cursor in the Notes note body"));
}

TEST_F(DirectionCommandsTest, TargetIsAnApplicationWithDirectionCommands) {
    EXPECT_FALSE(commands.target());
    openApplication("com.apple.Notes");
    EXPECT_EQ(commands.target(), "com.apple.Notes");
    openApplication("org.libreoffice.script");
    EXPECT_EQ(commands.target(), "org.libreoffice.script");
    openApplication("org.example.editor");
    EXPECT_FALSE(commands.target());
}

/// A document in Writer, with many other elements in its window.
class LibreOfficeDirectionTest : public DirectionCommandsTest {
protected:
    LibreOfficeDirectionTest() {
        openApplication("org.libreoffice.script");
        window->add("AXToolbar").add("AXButton").with("AXTitle", std::string("Bold")).withAction("AXPress");
        toolbar = &window->add("AXGroup").add("AXToolbar");
        rtl = &toolbar->add("AXButton").with("AXTitle", std::string("Right-To-Left")).withAction("AXPress");
        paragraph = &window->addTextField("AXTextArea");
        focus(*paragraph);
    }

    void begin() { commands.apply(WritingDirection::rightToLeft); }

    void apply() {
        begin();
        desktop.queue.advance(1ms);
    }

    FakeElement* toolbar = nullptr;
    FakeElement* rtl = nullptr;
    FakeElement* paragraph = nullptr;
};

TEST_F(LibreOfficeDirectionTest, PressesTheButtonOfAToolbar) {
    apply();
    rtl->with("AXEnabled", false);
    apply();
    toolbar->present(false);
    apply();
    EXPECT_THAT(said,
                ElementsAre("Applied RTL in LibreOffice Writer",
                            "LibreOffice Writer cannot change direction in this document",
                            "Show the Formatting toolbar with paragraph direction buttons in LibreOffice Writer"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 1);
}

TEST_F(LibreOfficeDirectionTest, ButtonsAreFoundInEveryLanguage) {
    for (const auto* title : {"מימין לשמאל", "من اليمين إلى اليسار", "راست به چپ", "De droite à gauche",
                              "Rechts-nach-links", "Справа налево", "De derecha a izquierda"}) {
        rtl->with("AXTitle", "\u200F" + std::string(title));
        said.clear();
        apply();
        EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer")) << title;
    }
    rtl->with("AXTitle", "משמאל לימין");
    apply();
    EXPECT_EQ(said.back(), "Show the Formatting toolbar with paragraph direction buttons in LibreOffice Writer");
}

TEST_F(LibreOfficeDirectionTest, TheProgramIsTheOneThatTheWindowNames) {
    for (const std::string program : {"LibreOffice Impress", "LibreOffice Draw", "LibreOffice Calc"}) {
        window->with("AXTitle", "document - " + program);
        said.clear();
        apply();
        EXPECT_THAT(said, ElementsAre("Applied RTL in " + program));
    }
}

TEST_F(LibreOfficeDirectionTest, ACellIsAnEditorInCalcOnly) {
    auto& sheet = window->add("AXTable");
    window->with("AXTitle", std::string("budget.ods - LibreOffice Calc"));
    for (auto* focused : {&sheet, &sheet.add("AXCell")}) {
        said.clear();
        focus(*focused);
        apply();
        EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Calc"));
    }
    window->with("AXTitle", std::string("letter.odt - LibreOffice Writer"));
    apply();
    EXPECT_EQ(said.back(), "Place the cursor in a paragraph in LibreOffice Writer");
    EXPECT_EQ(countOf(*rtl, "AXPress"), 2);
}

TEST_F(LibreOfficeDirectionTest, ReadOnlyDocumentsGetTheHint) {
    paragraph->settable("AXValue", false);
    apply();
    EXPECT_THAT(said, ElementsAre("Place the cursor in a paragraph in LibreOffice Writer"));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(LibreOfficeDirectionTest, WriterThatDoesNotAnswerIsTriedAgain) {
    desktop.accessibility.stopAnswering(pid);
    begin();
    desktop.queue.advance(1s);
    EXPECT_THAT(said, IsEmpty());
    desktop.accessibility.answerAgain(pid);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer"));
    desktop.accessibility.stopAnswering(pid);
    begin();
    desktop.queue.advance(1400ms);
    EXPECT_EQ(said.size(), 1U);
    desktop.queue.advance(100ms);
    EXPECT_EQ(said.back(), "Place the cursor in a paragraph in LibreOffice Writer");
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(LibreOfficeDirectionTest, AToolbarThatIsNotReadIsTriedAgain) {
    begin();
    desktop.accessibility.stopAnswering(pid);
    desktop.queue.advance(300ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.accessibility.answerAgain(pid);
    desktop.queue.advance(100ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 1);
}

TEST_F(LibreOfficeDirectionTest, APressThatIsAnsweredLateIsASuccess) {
    rtl->withAction("AXPress", [&] {
        desktop.accessibility.stopAnswering(pid);
        return AXActionResult::cannotComplete;
    });
    apply();
    desktop.queue.advance(500ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.accessibility.answerAgain(pid);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer"));
    apply();
    desktop.queue.advance(1500ms);
    EXPECT_EQ(said.back(), "LibreOffice Writer cannot change direction in this document");
    EXPECT_EQ(countOf(*rtl, "AXPress"), 2);
}

TEST_F(LibreOfficeDirectionTest, NoStepAsksForMuch) {
    for (int index = 0; index < 150; ++index) {
        window->add("AXGroup");
    }
    auto& last = window->add("AXToolbar");
    toolbar->present(false);
    last.add("AXButton").with("AXTitle", std::string("Right-To-Left")).withAction("AXPress");
    std::size_t maximum = 0;
    const std::function<void()> count = [&] { // between the steps
        maximum = std::max(maximum, desktop.accessibility.calls().size());
        desktop.accessibility.forgetCalls();
        if (said.empty()) {
            desktop.queue.postAfter(0ms, count);
        }
    };
    begin();
    count();
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer"));
    EXPECT_LE(maximum, 20U);
}

TEST_F(LibreOfficeDirectionTest, LooksThroughTwoHundredAndFortyElementsOfTheWindow) {
    toolbar->present(false);
    fill(*window, 235); // besides the window, a toolbar, a group, the paragraph and the toolbar with the button
    auto* last = &window->add("AXToolbar");
    last->add("AXButton").with("AXTitle", std::string("Right-To-Left")).withAction("AXPress");
    begin();
    desktop.queue.advance(2s);
    EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer"));
    last->present(false);
    fill(*window, 1);
    last = &window->add("AXToolbar");
    last->add("AXButton").with("AXTitle", std::string("Right-To-Left")).withAction("AXPress");
    begin();
    desktop.queue.advance(2s);
    EXPECT_EQ(said.back(), "Show the Formatting toolbar with paragraph direction buttons in LibreOffice Writer");
}

TEST_F(LibreOfficeDirectionTest, LooksThroughTwoHundredAndFortyElementsOfAToolbar) {
    for (const int count : {238, 239}) { // besides the toolbar and the button
        toolbar->present(false);
        toolbar = &window->add("AXToolbar");
        fill(*toolbar, count);
        toolbar->add("AXButton").with("AXTitle", std::string("Right-To-Left")).withAction("AXPress");
        begin();
        desktop.queue.advance(2s);
    }
    EXPECT_THAT(said,
                ElementsAre("Applied RTL in LibreOffice Writer",
                            "Show the Formatting toolbar with paragraph direction buttons in LibreOffice Writer"));
}

TEST_F(LibreOfficeDirectionTest, OnlyAButtonIsPressed) {
    for (const auto* role : {"AXButton", "AXCheckBox"}) {
        said.clear();
        rtl->with("AXRole", std::string(role));
        apply();
        EXPECT_THAT(said, ElementsAre("Applied RTL in LibreOffice Writer")) << role;
    }
    rtl->with("AXRole", std::string("AXMenuItem"));
    apply();
    EXPECT_EQ(said.back(), "Show the Formatting toolbar with paragraph direction buttons in LibreOffice Writer");
    EXPECT_EQ(countOf(*rtl, "AXPress"), 2);
}

TEST_F(LibreOfficeDirectionTest, FocusThatMovesWhileItSearchesIsLeftAlone) {
    begin();
    focus(window->addTextField("AXTextArea"));
    desktop.queue.advance(2s);
    EXPECT_THAT(said, ElementsAre("Direction change cancelled: focus moved to another field"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 0);
}

TEST_F(LibreOfficeDirectionTest, EndsSilentlyWhenItIsCancelledOrSomethingElseComesToTheFront) {
    begin();
    commands.cancelPending();
    desktop.queue.advance(2s);
    begin();
    desktop.withFrontApplication("org.example.editor");
    desktop.queue.advance(2s);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_EQ(countOf(*rtl, "AXPress"), 0);
}

TEST_F(LibreOfficeDirectionTest, ANewChordTakesThePlaceOfTheOneBefore) {
    auto& ltr = toolbar->add("AXButton").with("AXTitle", std::string("Left-To-Right")).withAction("AXPress");
    begin();
    commands.apply(WritingDirection::leftToRight);
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("Applied LTR in LibreOffice Writer"));
    EXPECT_EQ(countOf(*rtl, "AXPress"), 0);
    EXPECT_EQ(countOf(ltr, "AXPress"), 1);
}

/// The helpers, on a tree made for them.
class AXHelpersTest : public DirectionTest {
protected:
    AXHelpersTest() { openApplication("com.apple.TextEdit"); }

    AXElement reference(FakeElement& element) { return desktop.accessibility.reference(element); }

    bool isFound(FakeElement& target, std::size_t limit) {
        const auto found =
            ax::find(desktop.accessibility, reference(*window), limit, {},
                     [&](const AXElement& element, std::string_view) { return element == reference(target); });
        return found.has_value();
    }
};

TEST_F(AXHelpersTest, ASearchIsBoundedAndBreadthFirst) {
    auto& first = window->add("AXGroup");
    auto& second = window->add("AXGroup");
    auto& below = first.add("AXGroup");
    EXPECT_TRUE(isFound(second, 3));
    EXPECT_FALSE(isFound(below, 3));
    EXPECT_TRUE(isFound(below, 4));
}

TEST_F(AXHelpersTest, ASearchNeverLooksInsideTextTablesListsAndPages) {
    for (const auto* role : {"AXWebArea", "AXTextArea", "AXTextField", "AXTable", "AXOutline", "AXList"}) {
        auto& container = window->add(role);
        EXPECT_FALSE(isFound(container.add("AXGroup"), 100)) << role;
        EXPECT_TRUE(isFound(container, 100)) << role;
    }
}

TEST_F(AXHelpersTest, AnAncestorIsFoundWithinThirtyTwoSteps) {
    auto* element = window;
    for (int step = 0; step < 31; ++step) {
        element = &element->add("AXGroup");
    }
    auto& accessibility = desktop.accessibility;
    EXPECT_TRUE(ax::isDescendant(accessibility, reference(*element), reference(*window)));
    EXPECT_FALSE(ax::isDescendant(accessibility, reference(element->add("AXGroup")), reference(*window)));
    EXPECT_TRUE(ax::isDescendant(accessibility, reference(*window), reference(*window)));
    EXPECT_FALSE(ax::isDescendant(accessibility, reference(*window), reference(*element)));
}

TEST_F(AXHelpersTest, ALabelIsTheTitleOrElseTheDescriptionWithoutWhiteSpace) {
    auto& element = window->add("AXButton").with("AXTitle", std::string(" Home\n"));
    EXPECT_TRUE(ax::matches(desktop.accessibility, reference(element), {.english = "Home"}));
    element.with("AXDescription", std::string("\u00A0"
                                              "ribbon"));
    EXPECT_TRUE(ax::matches(desktop.accessibility, reference(element), {.english = "ribbon"}));
    EXPECT_FALSE(ax::matches(desktop.accessibility, reference(element), {.english = "home"}));
}

} // namespace
} // namespace quillane::testing

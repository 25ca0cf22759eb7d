// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeDirectionTest.hpp"

namespace quillane::testing {
namespace {

TEST_F(NativeDirectionTest, PressesTheCommandOfTheDirectionAfterOneStep) {
    openChrome();
    apply();
    EXPECT_TRUE(desktop.accessibility.isObserved(pid, "AXMenuOpened"));
    desktop.queue.advance(59ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
    EXPECT_EQ(countOf(*menu, "AXCancel"), 0);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
    EXPECT_FALSE(desktop.accessibility.isObserved(pid, "AXMenuOpened"));
    menu->present(false);
    apply(WritingDirection::leftToRight);
    desktop.queue.advance(60ms);
    EXPECT_EQ(said.back(), "Applied LTR in Chrome");
    EXPECT_EQ(countOf(*commands[1], "AXPress"), 1);
}

TEST_F(NativeDirectionTest, EveryCallIsBoundedByTheTimeout) {
    openChrome();
    apply();
    desktop.queue.advance(60ms);
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 150ms) << call.what;
    }
}

TEST_F(NativeDirectionTest, CannotCompleteCountsAsShown) {
    openChrome();
    showMenuResult = AXActionResult::cannotComplete;
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, AMenuThatCannotBeShownIsReportedAtOnce) {
    openChrome();
    showMenuResult = AXActionResult::failed;
    onShowMenu = [] {};
    apply();
    EXPECT_THAT(said, ElementsAre("Chrome cannot open the direction menu for this field"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
    expectNotApplied();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, AMenuThatIsOpenAlreadyIsLeftAlone) {
    openChrome();
    openMenu();
    apply();
    EXPECT_THAT(said, ElementsAre("Close the open menu and try again"));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(NativeDirectionTest, WaitsForTheMenuThroughTwentyFourMoreRuns) {
    openChrome();
    onShowMenu = [] {};
    apply();
    desktop.queue.advance(1440ms); // 24 runs
    EXPECT_THAT(said, IsEmpty());
    openMenu();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, GivesUpInTheTwentyFifthRunWithADiagnostic) {
    openChrome();
    editor->add("AXStaticText");
    onShowMenu = [] {};
    apply();
    desktop.queue.advance(1499ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.queue.advance(1ms);
    EXPECT_THAT(said, ElementsAre("The direction menu is unavailable in this editor"));
    EXPECT_EQ(desktop.userDefaults.string("LastBrowserDiagnostic"),
              "Editor actions: AXShowMenu\nFocus role: AXTextArea\nChild role: AXStaticText");
    expectNoPress();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, ASecondChordWhileOneRunsIsIgnored) {
    openChrome();
    onShowMenu = [] {};
    apply();
    apply(WritingDirection::leftToRight);
    EXPECT_EQ(countOf(*editor, "AXShowMenu"), 1);
    openMenu();
    desktop.queue.advance(200ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, TakesTheMenuThatWasAnnounced) {
    openChrome();
    auto& elsewhere = window->add("AXTable").add("AXMenu").withAction("AXCancel"); // where no search looks
    auto& line = elsewhere.add("AXMenuItem").with("AXDescription", "Writing Direction").add("AXMenu");
    auto& command = line.add("AXMenuItem").with("AXDescription", "Right to Left").withAction("AXPress");
    onShowMenu = [&] {
        desktop.accessibility.notify(pid, "AXMenuOpened", *page); // which is none
        desktop.accessibility.notify(pid, "AXMenuOpened", elsewhere);
        desktop.accessibility.notify(pid, "AXMenuOpened", line); // the first one stays
    };
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    EXPECT_EQ(countOf(command, "AXPress"), 1);
}

TEST_F(NativeDirectionTest, AnotherApplicationInFrontEndsTheAttemptSilently) {
    openChrome();
    onShowMenu = [] {};
    const auto chrome = pid;
    apply();
    desktop.withFrontApplication("com.apple.finder");
    desktop.queue.advance(2s);
    EXPECT_THAT(said, IsEmpty());
    desktop.workspace.activate(chrome);
    expectNoPress();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, ACancelledAttemptEndsSilently) {
    openChrome();
    onShowMenu = [] {};
    apply();
    adapter.cancelPending();
    openMenu();
    desktop.queue.advance(2s);
    EXPECT_THAT(said, IsEmpty());
    expectNotApplied();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, AFlagMayBeANumber) {
    openChrome();
    editor->with("AXEnabled", std::int64_t{1});
    commands[1]->with("AXEnabled", std::int64_t{0});
    commands[2]->with("AXEnabled", std::int64_t{0});
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
    expectNotApplied();
}

TEST_F(NativeDirectionTest, AMenuWithoutTheSubmenuIsClosed) {
    openChrome();
    item->with("AXTitle", std::string("Spelling"));
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("This editor does not offer a paragraph direction command"));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
    expectNotApplied();
}

TEST_F(NativeDirectionTest, ACommandOfTheSelectionIsNeverPressed) {
    openChrome();
    commands[0]->with("AXTitle", std::string("Selection"));
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("This editor does not offer a paragraph direction command"));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
    expectNotApplied();
}

TEST_F(NativeDirectionTest, FocusInTheMenuIsFine) {
    openChrome();
    onShowMenu = [this] {
        openMenu();
        focus(*item);
    };
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, FocusInAnotherFieldCancels) {
    openChrome();
    auto& other = page->addTextField();
    onShowMenu = [&] {
        openMenu();
        focus(other);
    };
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Direction change cancelled: focus moved to another field"));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
    expectNotApplied();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, NoFocusCancels) {
    openChrome();
    onShowMenu = [this] {
        openMenu();
        desktop.accessibility.focus(pid, nullptr);
    };
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Cursor position unavailable — direction change cancelled"));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
    expectNotApplied();
    expectNextAttemptWorks();
}

TEST_F(NativeDirectionTest, ASelectionThatTheMenuMovedIsPutBack) {
    openChrome();
    onShowMenu = [this] {
        openMenu();
        editor->with("AXSelectedTextRange", AXTextRange{0, 9});
    };
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    const auto now = desktop.accessibility.attribute(desktop.accessibility.reference(*editor), "AXSelectedTextRange");
    EXPECT_EQ(now, AXValue(AXTextRange{4, 2}));
}

TEST_F(NativeDirectionTest, ASelectionThatCannotBePutBackCancels) {
    openChrome();
    for (const bool stubborn : {false, true}) {
        stubborn ? editor->ignoringWrites("AXSelectedTextRange") : editor->settable("AXSelectedTextRange", false);
        said.clear();
        editor->with("AXSelectedTextRange", AXTextRange{4, 2});
        menu->present(false);
        onShowMenu = [this] {
            openMenu();
            editor->with("AXSelectedTextRange", AXTextRange{0, 9});
        };
        apply();
        desktop.queue.advance(60ms);
        EXPECT_THAT(said, ElementsAre("Could not preserve the text selection — direction change cancelled"));
        expectNotApplied();
    }
    EXPECT_EQ(countOf(*menu, "AXCancel"), 2);
}

TEST_F(NativeDirectionTest, MarkersStandInForARange) {
    openChrome();
    editor->without("AXSelectedTextRange");
    editor->with("AXSelectedTextMarkerRange", fakes::fakeOpaqueValue("here"));
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, AnEditorWithoutASelectionIsNotTouched) {
    openChrome();
    editor->without("AXSelectedTextRange");
    apply();
    EXPECT_THAT(said, ElementsAre("The editor does not expose the cursor position — direction was not changed"));
    EXPECT_EQ(countOf(*editor, "AXShowMenu"), 0);
}

TEST_F(NativeDirectionTest, ACommandThatIsNotAppliedIsReportedAndTheMenuClosed) {
    openChrome();
    commands[2]->with("AXEnabled", false);
    apply();
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
    EXPECT_EQ(countOf(*menu, "AXCancel"), 1);
    expectNotApplied();
}

TEST_F(NativeDirectionTest, IgnoresAnApplicationThatIsNotInFront) {
    openChrome();
    apply(WritingDirection::rightToLeft, applications::safari);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
}

TEST_F(NativeDirectionTest, AnAdapterThatIsGoneDoesNothing) {
    openChrome();
    {
        NativeDirectionAdapter other(services(), report());
        other.apply(WritingDirection::rightToLeft, applications::chrome);
    }
    desktop.queue.advance(2s);
    EXPECT_THAT(said, IsEmpty());
    expectNotApplied();
}

TEST_F(NativeDirectionTest, AMenuWhoseApplicationDoesNotAnswerIsReadAgain) {
    openChrome();
    apply();
    desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
    desktop.accessibility.stopAnswering(pid);
    desktop.queue.advance(600ms);
    EXPECT_THAT(said, IsEmpty());
    desktop.accessibility.answerAgain(pid);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
}

TEST_F(NativeDirectionTest, AMenuThatCannotBeReachedIsClosedWhenItCanUnlessTheUserTookIt) {
    for (const bool isTaken : {false, true}) {
        openChrome();
        said.clear();
        apply();
        desktop.accessibility.notify(pid, "AXMenuOpened", *menu);
        desktop.accessibility.stopAnswering(pid);
        desktop.queue.advance(1600ms);
        EXPECT_THAT(said, ElementsAre("This editor does not offer a paragraph direction command"));
        if (isTaken) {
            adapter.interrupt(core::UserInput::navigation);
        }
        desktop.accessibility.answerAgain(pid);
        desktop.queue.advance(60ms);
        EXPECT_EQ(countOf(*menu, "AXCancel"), isTaken ? 0 : 1);
        desktop.queue.advance(10s);
        EXPECT_EQ(countOf(*menu, "AXCancel"), isTaken ? 0 : 1);
    }
}

TEST_F(NativeDirectionTest, AHangingApplicationEndsInTheHint) {
    openChrome();
    desktop.accessibility.stopAnswering(pid);
    apply();
    desktop.queue.advance(180ms);
    EXPECT_THAT(said, ElementsAre("Place the cursor in an editable text field on the website"));
}

TEST_F(NativeDirectionTest, FieldsOfAPageThatAreNotEditorsGetTheHint) {
    openChrome();
    const std::string hint = "Place the cursor in an editable text field on the website";
    editor->settable("AXValue", false).settable("AXSelectedText");
    apply();
    editor->settable("AXValue").with("AXSubrole", std::string("AXSecureTextField"));
    apply();
    editor->without("AXSubrole").with("AXEnabled", false);
    apply();
    focus(window->addTextField()); // the address bar
    apply();
    EXPECT_THAT(said, ElementsAre(hint, hint, hint, hint));
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(NativeDirectionTest, SafariHasAMenuTitleOfItsOwn) {
    openChrome("com.apple.Safari", "Paragraph Direction");
    apply(WritingDirection::rightToLeft, applications::safari);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Safari"));
}

TEST_F(NativeDirectionTest, TextEditAndNotesTurnTheirDocumentOnly) {
    const std::vector<std::tuple<const SupportedApplication*, std::string, std::string>> cases{
        {&applications::textEdit, "First Text View", "Place the cursor in the TextEdit document body"},
        {&applications::notes, "Note Body Text View", "Place the cursor in the Notes note body"}};
    for (const auto& [application, identifier, hint] : cases) {
        openApplication(application->bundleID);
        commands.clear();
        useEditor(window->addTextField("AXTextArea"), "Writing Direction");
        said.clear();
        apply(WritingDirection::leftToRight, *application);
        editor->with("AXIdentifier", identifier);
        apply(WritingDirection::leftToRight, *application);
        desktop.queue.advance(60ms);
        EXPECT_THAT(said, ElementsAre(hint, "Applied LTR in " + std::string(application->displayName)));
    }
}

TEST_F(NativeDirectionTest, MailHasOneMenuForTheSubjectAndAnotherForTheBody) {
    openApplication("com.apple.mail");
    auto& subject = window->addTextField().with("AXIdentifier", std::string("Mail.subjectField"));
    useEditor(subject, "Writing Direction");
    apply(WritingDirection::rightToLeft, applications::mail);
    desktop.queue.advance(60ms);
    menu->present(false);
    auto& body = window->add("AXWebArea")
                     .with("AXEnabled", true)
                     .with("AXDescription", std::string("message body"))
                     .settable("AXValue");
    useEditor(body, "Paragraph Direction");
    apply(WritingDirection::rightToLeft, applications::mail);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Mail", "Applied RTL in Mail"));
    said.clear();
    subject.with("AXIdentifier", std::string("Mail.toField")); // a window in which messages are read
    apply(WritingDirection::rightToLeft, applications::mail);
    EXPECT_THAT(said, ElementsAre("Place the cursor in the Mail message body or subject"));
}

/// An attempt whose steps come late must neither act twice nor act after it was cancelled.
TEST_F(NativeDirectionTest, StepsThatComeLateApplyOnceOrNotAtAll) {
    openChrome();
    desktop.queue.nap(1s);
    apply();
    desktop.queue.advance(5s);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
    menu->present(false);
    apply();
    adapter.cancelPending();
    apply(); // its step falls together with the cancelled one's
    desktop.queue.advance(5s);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome", "Close the open menu and try again"));
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
}

/// A context menu as macOS may show it: nobody's child, but named by the element that it was opened on.
TEST_F(NativeDirectionTest, TheMenuThatAnElementShowsIsFound) {
    openChrome();
    auto& elsewhere =
        window->add("AXTable").add("AXMenu").withAction("AXCancel").present(false); // where no search looks
    auto& command = elsewhere.add("AXMenuItem")
                        .with("AXTitle", std::string("Writing Direction"))
                        .add("AXMenu")
                        .add("AXMenuItem")
                        .with("AXTitle", std::string("Right to Left"))
                        .withAction("AXPress");
    for (auto* owner : {editor, &tree()}) {
        said.clear();
        onShowMenu = [&] { owner->showMenu(elsewhere); };
        apply();
        desktop.queue.advance(60ms);
        EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
        owner->closeMenu();
    }
    EXPECT_EQ(countOf(command, "AXPress"), 2);
    editor->showMenu(elsewhere);
    apply();
    EXPECT_EQ(said.back(), "Close the open menu and try again");
}

/// The menus of the menu bar can be walked while they are closed, and hold items of the same titles.
TEST_F(NativeDirectionTest, AClosedMenuOfTheMenuBarIsNoOpenMenu) {
    openChrome();
    onShowMenu = [] {};
    apply();
    EXPECT_TRUE(desktop.accessibility.isObserved(pid, "AXMenuOpened"));
    desktop.queue.advance(1500ms);
    EXPECT_THAT(said, ElementsAre("The direction menu is unavailable in this editor"));
    EXPECT_THAT(desktop.accessibility.actions(), ElementsAre(fakes::FakeAccessibility::Action{editor, "AXShowMenu"}));
}

TEST_F(NativeDirectionTest, LooksThroughTwoHundredAndFortyElementsOfAMenu) {
    openChrome();
    for (const int count : {237, 238}) { // besides the menu and its first two items
        menu = &tree().add("AXMenu").present(false).withAction("AXCancel");
        menu->add("AXMenuItem").with("AXTitle", std::string("Spelling"));
        fill(*menu, count);
        auto& submenus = menu->add("AXMenuItem").with("AXTitle", std::string("Writing Direction")).add("AXMenu");
        submenus.add("AXMenuItem").with("AXTitle", std::string("Right to Left")).withAction("AXPress");
        apply();
        desktop.queue.advance(60ms);
        menu->present(false);
    }
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome", "This editor does not offer a paragraph direction command"));
}

TEST_F(NativeDirectionTest, DiagnosticNamesTheFirstThirtyTwoChildren) {
    openChrome();
    editor->withAction("AXConfirm");
    for (int index = 0; index < 32; ++index) {
        editor->add("AXStaticText");
    }
    editor->add("AXImage");
    onShowMenu = [] {};
    apply();
    desktop.queue.advance(2s);
    std::string expected = "Editor actions: AXConfirm, AXShowMenu\nFocus role: AXTextArea";
    for (int index = 0; index < 32; ++index) {
        expected += "\nChild role: AXStaticText";
    }
    EXPECT_EQ(desktop.userDefaults.string("LastBrowserDiagnostic"), expected);
}

TEST_F(NativeDirectionTest, DiagnosticSaysWhatIsUnknown) {
    openChrome();
    onShowMenu = [] {};
    apply();
    desktop.accessibility.focus(pid, nullptr);
    desktop.queue.advance(2s);
    EXPECT_EQ(desktop.userDefaults.string("LastBrowserDiagnostic"), "Editor actions: AXShowMenu\nFocus role: unknown");
    focus(*editor);
    editor->add("").without("AXRole");
    apply();
    desktop.queue.advance(2s);
    EXPECT_EQ(desktop.userDefaults.string("LastBrowserDiagnostic"),
              "Editor actions: AXShowMenu\nFocus role: AXTextArea\nChild role: unknown");
}

} // namespace
} // namespace quillane::testing

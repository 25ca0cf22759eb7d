// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegateTest.hpp"

#include <QTextBlock>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using fakes::FakeElement;
using fakes::Modifier;

/// A chord in Chrome whose menu does not open: each test lets an attempt wait, and then something happens.
class DirectionFlowTest : public AppDelegateTest {
protected:
    void openChrome() {
        launch();
        desktop.withFrontApplication("com.google.Chrome");
        auto& page = desktop.accessibility.tree(desktop.frontPid()).add("AXWebArea");
        editor = &page.addTextField("AXTextArea").with("AXSelectedTextRange", AXTextRange{0, 0});
        editor->withAction("AXShowMenu");
        menu = &desktop.accessibility.tree(desktop.frontPid()).add("AXMenu").present(false);
        menu->withAction("AXCancel", [this] {
            menu->present(false);
            return AXActionResult::done;
        });
        desktop.accessibility.focus(desktop.frontPid(), editor);
    }

    /// An application that is not a supported one. Each faked application has the commands in its menu bar.
    void openEditorWithMenuBar() {
        desktop.withFrontApplication("org.example.editor");
        desktop.accessibility.focus(desktop.frontPid(),
                                    &desktop.accessibility.tree(desktop.frontPid()).addTextField("AXTextArea"));
        desktop.queue.advance(500ms);
    }

    void chord() {
        desktop.press(Modifier::leftControl).press(Modifier::rightShift);
        desktop.releaseAll().settle();
    }

    [[nodiscard]] bool isWaiting() { return desktop.accessibility.isObserved(desktop.frontPid(), "AXMenuOpened"); }

    [[nodiscard]] std::size_t attempts() const {
        return static_cast<std::size_t>(std::ranges::count(desktop.accessibility.actions(),
                                                           fakes::FakeAccessibility::Action{editor, "AXShowMenu"}));
    }

    [[nodiscard]] std::optional<std::string> lastStatus() { return defaults.string("LastStatus"); }

    FakeElement* editor = nullptr;
    FakeElement* menu = nullptr;
};

TEST_F(DirectionFlowTest, BrowserIsWokenWhenItComesToTheFront) {
    launch();
    desktop.withFrontApplication("com.google.Chrome");
    EXPECT_FALSE(desktop.accessibility.isAsleep(desktop.frontPid()));
    desktop.withFrontApplication("com.microsoft.edgemac"); // whose fields have Shift typing
    EXPECT_FALSE(desktop.accessibility.isAsleep(desktop.frontPid()));
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 15ms) << call.what;
    }
}

TEST_F(DirectionFlowTest, BrowserInFrontIsWokenWhenTheKeyboardIsWatchedAndNotBefore) {
    desktop.withPermissions({});
    desktop.withFrontApplication("com.google.Chrome");
    launch();
    desktop.queue.advance(4s);
    EXPECT_TRUE(desktop.accessibility.isAsleep(desktop.frontPid()));
    desktop.withPermissions({core::allPermissions.begin(), core::allPermissions.end()});
    desktop.queue.advance(2s);
    EXPECT_FALSE(desktop.accessibility.isAsleep(desktop.frontPid()));
}

TEST_F(DirectionFlowTest, BrowserThatDoesNotAnswerIsWokenAgainAndOneThatHasAnsweredIsNot) {
    launch();
    desktop.withFrontApplication("com.google.Chrome");
    const auto chrome = desktop.frontPid();
    desktop.accessibility.forgetCalls();
    desktop.queue.advance(10s);
    EXPECT_TRUE(desktop.accessibility.calls().empty());
    desktop.withFrontApplication("com.microsoft.edgemac");
    auto& edge = desktop.accessibility.tree(desktop.frontPid());
    edge.failing();
    desktop.workspace.activate(chrome);
    desktop.switchTo("com.microsoft.edgemac");
    desktop.accessibility.forgetCalls();
    desktop.queue.advance(4s);
    EXPECT_EQ(desktop.accessibility.calls().size(), 2U);
    edge.failing(false);
    desktop.queue.advance(10s);
    EXPECT_EQ(desktop.accessibility.calls().size(), 3U);
}

TEST_F(DirectionFlowTest, BrowserIsLeftAloneWhileNothingLooksIntoIt) {
    launch();
    auto options = model->options();
    options.shiftEnglish = options.writingDirection = false;
    options.languageSwitch = true;
    model->setOptions(options);
    desktop.withFrontApplication("com.google.Chrome");
    EXPECT_TRUE(desktop.accessibility.isAsleep(desktop.frontPid()));
}

TEST_F(DirectionFlowTest, AChordIsAppliedAndItsOutcomeStored) {
    openChrome();
    chord();
    EXPECT_TRUE(isWaiting());
    desktop.queue.advance(1500ms);
    EXPECT_EQ(lastStatus(), "The direction menu is unavailable in this editor");
    EXPECT_EQ(model->lastAction().rendered(core::AppLanguage::english), lastStatus());
    EXPECT_TRUE(defaults.object("LastBrowserDiagnostic"));
}

TEST_F(DirectionFlowTest, AKeyAClickAWakeOptionsAndAPauseCancel) {
    openChrome();
    const std::vector<std::function<void()>> happenings{[this] { desktop.type(0).settle(); },
                                                        [this] { desktop.click().settle(); },
                                                        [this] { desktop.workspace.wake(); },
                                                        [this] {
                                                            auto options = model->options();
                                                            options.languageSwitch = !options.languageSwitch;
                                                            model->setOptions(options);
                                                        },
                                                        [this] {
                                                            auto options = model->options();
                                                            options.paused = true;
                                                            model->setOptions(options);
                                                            options.paused = false;
                                                            model->setOptions(options);
                                                        }};
    for (std::size_t index = 0; index < happenings.size(); ++index) {
        chord();
        ASSERT_EQ(attempts(), index + 1);
        happenings[index]();
        desktop.queue.advance(1900ms);
    }
    EXPECT_FALSE(lastStatus());
}

TEST_F(DirectionFlowTest, TheOutcomeIsStoredInTheLanguageOfTheInterface) {
    openChrome();
    preferences->choose(core::AppLanguage::hebrew);
    chord();
    desktop.queue.advance(1500ms);
    EXPECT_EQ(lastStatus(), model->lastAction().rendered(core::AppLanguage::hebrew));
    EXPECT_NE(lastStatus(), model->lastAction().rendered(core::AppLanguage::english));
}

TEST_F(DirectionFlowTest, ALanguageSwitchCancels) {
    openChrome();
    chord();
    desktop.press(Modifier::leftOption).press(Modifier::leftShift);
    desktop.releaseAll().settle();
    desktop.queue.advance(2s);
    EXPECT_FALSE(defaults.object("LastBrowserDiagnostic"));
}

TEST_F(DirectionFlowTest, AModifierDoesNotCancelAndAnotherChordIsIgnored) {
    openChrome();
    chord();
    desktop.press(Modifier::leftShift).releaseAll().settle();
    chord();
    EXPECT_TRUE(isWaiting());
    desktop.queue.advance(1500ms);
    EXPECT_EQ(lastStatus(), "The direction menu is unavailable in this editor");
    EXPECT_EQ(attempts(), 1U);
    chord();
    EXPECT_EQ(attempts(), 2U);
}

TEST_F(DirectionFlowTest, ARestartedTapCancels) {
    openChrome();
    desktop.queue.advance(1s);
    chord();
    desktop.tap.stop();
    ASSERT_TRUE(isWaiting());
    desktop.queue.advance(1s); // to the next refresh
    EXPECT_TRUE(desktop.tap.isEnabled());
    desktop.queue.advance(2s);
    EXPECT_FALSE(lastStatus());
}

TEST_F(DirectionFlowTest, ATapThatTheSystemDisabledCancels) {
    openChrome();
    chord();
    desktop.tap.disable();
    desktop.settle();
    desktop.queue.advance(2s);
    EXPECT_EQ(lastStatus(), "The system stopped the keyboard engine; it was restarted");
}

TEST_F(DirectionFlowTest, AMenuThatOpensAfterTheTapWasDisabledIsClosed) {
    openChrome();
    chord();
    desktop.tap.disable();
    desktop.settle();
    desktop.queue.advance(2s);
    menu->present();
    desktop.queue.advance(1s);
    EXPECT_FALSE(menu->isPresent());
}

TEST_F(DirectionFlowTest, AMenuThatOpensAfterALetterIsClosedAndOneThatTheUserRequestsIsNot) {
    openChrome();
    chord();
    desktop.type(0).settle();
    menu->present();
    desktop.queue.advance(1s);
    EXPECT_FALSE(menu->isPresent());
    chord();
    desktop.click(EventType::rightMouseDown).settle();
    menu->present();
    desktop.queue.advance(1s);
    EXPECT_TRUE(menu->isPresent());
}

TEST_F(DirectionFlowTest, AnAreaCaptureCancels) {
    openChrome();
    chord();
    ASSERT_TRUE(isWaiting());
    click("Capture Area to Clipboard…");
    desktop.queue.advance(2s);
    EXPECT_FALSE(defaults.object("LastBrowserDiagnostic"));
}

TEST_F(DirectionFlowTest, AnotherApplicationInFrontCancels) {
    openChrome();
    chord();
    desktop.withFrontApplication("com.apple.finder");
    desktop.queue.advance(2s);
    EXPECT_FALSE(lastStatus());
}

TEST_F(DirectionFlowTest, AChordIsAppliedInAnyApplicationOnMacOSWithTheCommandsInItsMenuBar) {
    launch();
    openEditorWithMenuBar();
    chord();
    EXPECT_EQ(lastStatus(), "Applied RTL in " + desktop.workspace.frontmostApplication()->name);
}

TEST_F(DirectionFlowTest, AChordIsAppliedInSupportedApplicationsAloneOnLinux) {
    shownOn = core::Desktop::linuxDesktop;
    launch();
    openEditorWithMenuBar();
    chord();
    EXPECT_FALSE(lastStatus());
}

TEST_F(DirectionFlowTest, TheTestGoesToTheLastSupportedApplication) {
    openChrome();
    desktop.withFrontApplication("com.apple.finder");
    EXPECT_EQ(model->testTargetID(), "com.google.Chrome");
    model->testDirection(core::WritingDirection::rightToLeft);
    desktop.queue.advance(250ms);
    EXPECT_TRUE(isWaiting());
    model->setOptions({});
    auto options = model->options();
    options.writingDirection = false;
    model->setOptions(options);
    model->testDirection(core::WritingDirection::rightToLeft);
    EXPECT_EQ(lastStatus(), "Enable the direction feature and grant the required permissions");
}

[[nodiscard]] Qt::LayoutDirection directionOf(const QTextEdit& box, int paragraph) {
    return box.document()->findBlockByNumber(paragraph).blockFormat().layoutDirection();
}

TEST_F(DirectionFlowTest, AChordTurnsTheParagraphOfTheProgramsOwnTextBox) {
    launch();
    desktop.withFrontApplication("com.quillane.app");
    auto& box = focusTestingBox();
    box.setPlainText("one\ntwo");
    chord();
    EXPECT_EQ(directionOf(box, 0), Qt::RightToLeft);
    EXPECT_NE(directionOf(box, 1), Qt::RightToLeft);
    desktop.press(Modifier::leftControl).press(Modifier::leftShift).releaseAll().settle();
    EXPECT_EQ(directionOf(box, 0), Qt::LeftToRight);
    EXPECT_FALSE(lastStatus()) << "no adapter is asked";
}

TEST_F(DirectionFlowTest, AChordDoesNothingElsewhereInTheProgramsOwnWindows) {
    launch();
    desktop.withFrontApplication("com.quillane.app");
    auto& box = focusTestingBox();
    box.setPlainText("one");
    box.clearFocus();
    chord();
    EXPECT_NE(directionOf(box, 0), Qt::RightToLeft);
    box.setFocus();
    click("Permissions"); // the box is no longer shown
    settleWindows();
    chord();
    EXPECT_NE(directionOf(box, 0), Qt::RightToLeft);
}

TEST_F(DirectionFlowTest, AChordReachesTheTextBoxOnlyWhileTheOptionIsOn) {
    launch();
    desktop.withFrontApplication("com.quillane.app");
    auto& box = focusTestingBox();
    click("Paragraph direction shortcuts");
    chord();
    EXPECT_NE(directionOf(box, 0), Qt::RightToLeft);
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardPanelTest.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using testing::ClipboardPanelTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace flags = core::flags;
namespace key = testing::key;
namespace texts = core::texts;

TEST_F(ClipboardPanelTest, ReturnPastesIntoTheApplicationThatWasInFront) {
    open({"one", "two"});
    panel_->handle(key::down, 0);
    EXPECT_TRUE(panel_->handle(key::enter, 0));
    EXPECT_EQ(onPasteboard(), "one");
    EXPECT_FALSE(panel_->isVisible());
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    queue.advance(49ms);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    queue.advance(1ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, SizeIs(1));
    EXPECT_THAT(recorded(), ElementsAre("one", "two")); // nothing was copied again
    panel_->toggle();
    EXPECT_THAT(found(), ElementsAre("one", "two")); // and the used entry is on top
}

TEST_F(ClipboardPanelTest, CommandAndADigitPastesThatEntry) {
    open({"one", "two", "three"});
    panel_->handle(key::five, flags::command);
    EXPECT_TRUE(panel_->isVisible());
    EXPECT_EQ(onPasteboard(), "three");
    panel_->handle(key::one + 1, flags::command); // the key of 2
    queue.advance(50ms);
    EXPECT_EQ(onPasteboard(), "two");
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
}

TEST_F(ClipboardPanelTest, OptionReturnOnlyCopies) {
    open({"one", "two"});
    panel_->handle(key::down, 0);
    panel_->handle(key::enter, flags::option);
    EXPECT_EQ(onPasteboard(), "one");
    EXPECT_FALSE(panel_->isVisible());
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
}

TEST_F(ClipboardPanelTest, ShiftReturnPastesWithoutStyles) {
    start();
    pasteboard.copy({{{{std::string(core::pasteboardTypes::rtf), "{\\rtf1 one}"},
                       {std::string(core::pasteboardTypes::string), "one"}},
                      {}}});
    pass(500ms);
    open({});
    pasteboard.copyText("something else");
    panel_->handle(key::enter, flags::shift);
    ASSERT_THAT(pasteboard.items(), SizeIs(1));
    EXPECT_THAT(pasteboard.items().front().flavours, SizeIs(1));
    EXPECT_EQ(onPasteboard(), "one");
}

TEST_F(ClipboardPanelTest, ThePasteWaitsUntilTheApplicationIsInFront) {
    const auto other = workspace.open("com.example.other");
    open({"one"});
    workspace.activate(other);
    workspace.answerActivation(fakes::FakeWorkspace::Activation::refused);
    panel_->handle(key::enter, 0);
    queue.advance(500ms);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    workspace.activate(editor_.pid);
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
}

TEST_F(ClipboardPanelTest, ItBringsTheApplicationToTheFront) {
    const auto other = workspace.open("com.example.other");
    open({"one"});
    workspace.activate(other);
    panel_->handle(key::enter, 0);
    queue.runPosted();
    EXPECT_EQ(workspace.frontmostApplication()->pid, editor_.pid);
}

TEST_F(ClipboardPanelTest, PasteWaitsForAnActivationThatComesLate) {
    const auto other = workspace.open("com.example.other");
    open({"one"});
    workspace.activate(other);
    workspace.answerActivation(fakes::FakeWorkspace::Activation::late, 420ms);
    panel_->handle(key::enter, 0);
    queue.advance(449ms);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    queue.advance(1ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
}

TEST_F(ClipboardPanelTest, RefusedActivationPastesNothingAnywhereAndSaysHow) {
    const auto other = workspace.open("com.example.other");
    open({"one"});
    workspace.activate(other);
    workspace.answerActivation(fakes::FakeWorkspace::Activation::refused);
    panel_->handle(key::enter, 0);
    queue.advance(5s);
    workspace.activate(editor_.pid); // by the user, who pastes himself
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    EXPECT_THAT(failures_, ElementsAre(core::LocalizedText(texts::itemCopiedReturnToApp.on(core::Desktop::macOS))));
    EXPECT_EQ(onPasteboard(), "one");
}

TEST_F(ClipboardPanelTest, PasteByTimersThatFireLateIsOneAndGoesToNoOtherApplication) {
    const auto other = workspace.open("com.example.other");
    open({"one"});
    queue.nap(10s);
    panel_->handle(key::enter, 0);
    queue.advance(9s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    queue.advance(20s);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
    panel_->toggle();
    panel_->handle(key::enter, 0);
    queue.runPosted();
    workspace.activate(other);
    queue.advance(10s);
    EXPECT_THAT(keyEvents.posted, SizeIs(1));
}

TEST_F(ClipboardPanelTest, ThePasteWaitsForTheEndOfSecureInputAndForKeysThatAreHeld) {
    open({"one"});
    secureInput.setEnabled(true);
    panel_->handle(key::enter, 0);
    queue.advance(300ms);
    secureInput.setEnabled(false);
    keyEvents.refusesKeys = true;
    queue.advance(300ms);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    keyEvents.refusesKeys = false;
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
}

TEST_F(ClipboardPanelTest, ItGivesUpAfterTwentyAttempts) {
    open({"one"});
    secureInput.setEnabled(true);
    panel_->handle(key::enter, 0);
    queue.advance(999ms); // the twentieth is at 1000 ms
    const auto waiting = queue.timerCount();
    EXPECT_THAT(failures_, IsEmpty());
    queue.advance(1ms);
    EXPECT_EQ(queue.timerCount(), waiting - 1);
    EXPECT_THAT(failures_, ElementsAre(core::LocalizedText(texts::itemCopiedReturnToApp.on(core::Desktop::macOS))));
    secureInput.setEnabled(false);
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
    EXPECT_EQ(onPasteboard(), "one");
}

TEST_F(ClipboardPanelTest, TheTwentiethAttemptStillPastes) {
    open({"one"});
    secureInput.setEnabled(true);
    panel_->handle(key::enter, 0);
    queue.advance(999ms);
    secureInput.setEnabled(false);
    queue.advance(1ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
    EXPECT_THAT(failures_, IsEmpty());
}

TEST_F(ClipboardPanelTest, PasteThatIsStoppedSaysNothing) {
    open({"one"});
    secureInput.setEnabled(true);
    panel_->handle(key::enter, 0);
    pasteboard.copyText("something else");
    queue.advance(5s);
    EXPECT_THAT(failures_, IsEmpty());
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardPanelTest.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <gmock/gmock.h>

#include <fstream>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using testing::ClipboardPanelTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace key = testing::key;
namespace flags = core::flags;
namespace texts = core::texts;

// Searching and selecting

TEST_F(ClipboardPanelTest, OpensWithEverythingAndTheNewestSelected) {
    open({"one", "two", "three"});
    EXPECT_TRUE(panel_->isVisible());
    EXPECT_EQ(shown_, 1);
    EXPECT_THAT(found(), ElementsAre("three", "two", "one"));
    EXPECT_EQ(selected(), "three");
    EXPECT_FALSE(panel_->message());
}

TEST_F(ClipboardPanelTest, TheHotKeyClosesItAgain) {
    open({"one"}).toggle();
    EXPECT_FALSE(panel_->isVisible());
    EXPECT_EQ(closed_, 1);
    panel_->close();
    EXPECT_EQ(closed_, 1);
}

TEST_F(ClipboardPanelTest, TypingFiltersAndMovesTheSelectionToTheFirstMatch) {
    open({"apple", "banana", "apricot"});
    panel_->setQuery("app");
    EXPECT_THAT(found(), ElementsAre("apple"));
    EXPECT_EQ(selected(), "apple");
    panel_->setQuery("");
    EXPECT_EQ(selected(), "apple"); // stays while its entry exists
    panel_->setQuery("nowhere");
    EXPECT_FALSE(panel_->selection());
    panel_->setQuery("b");
    EXPECT_EQ(selected(), "banana");
}

TEST_F(ClipboardPanelTest, SearchAlsoFindsWhatTheSameKeysTypeInTheOtherLayout) {
    auto& panel = open({"שלום", "akuo", "שלום akuo", "other"});
    panel.retyped = [](const std::string& query) {
        return query == "akuo" ? std::optional<std::string>("שלום") : std::nullopt;
    };
    panel.setQuery("akuo");
    EXPECT_THAT(found(), ElementsAre("שלום akuo", "akuo", "שלום")); // what matches as typed comes first
    EXPECT_EQ(panel.matchCount(), 2U);
    EXPECT_EQ(panel.retypedQuery(), "שלום");
    panel.handle(key::down, 0);
    panel.handle(key::down, 0);
    EXPECT_EQ(selected(), "שלום");

    panel.setQuery("other");
    EXPECT_THAT(found(), ElementsAre("other"));
    EXPECT_EQ(panel.retypedQuery(), std::nullopt);
}

TEST_F(ClipboardPanelTest, RetypedQueryThatFindsNothingMoreIsNotReported) {
    auto& panel = open({"akuo"});
    panel.retyped = [](const std::string&) { return std::optional<std::string>("שלום"); };
    panel.setQuery("akuo");
    EXPECT_EQ(panel.retypedQuery(), std::nullopt);
    EXPECT_EQ(panel.matchCount(), 1U);
    // A query without letters matches everything already, and a retyped one without letters would.
    panel.setQuery(" ");
    EXPECT_THAT(found(), ElementsAre("akuo"));
    panel.retyped = [](const std::string&) { return std::optional<std::string>(" "); };
    panel.setQuery("nowhere");
    EXPECT_THAT(found(), ElementsAre());
}

TEST_F(ClipboardPanelTest, OpeningAgainStartsFresh) {
    open({"apple", "banana"}).setQuery("apple");
    panel_->toggle();
    panel_->toggle();
    EXPECT_EQ(panel_->query(), "");
    EXPECT_EQ(selected(), "banana");
}

TEST_F(ClipboardPanelTest, ArrowsMoveWithinTheResults) {
    open({"one", "two", "three"});
    EXPECT_TRUE(panel_->handle(key::up, 0));
    EXPECT_EQ(selected(), "three");
    EXPECT_TRUE(panel_->handle(key::down, flags::capsLock)); // locks do not count
    EXPECT_TRUE(panel_->handle(key::down, 0));
    EXPECT_TRUE(panel_->handle(key::down, 0));
    EXPECT_EQ(selected(), "one");
    EXPECT_TRUE(panel_->handle(key::up, 0));
    EXPECT_EQ(selected(), "two");
}

TEST_F(ClipboardPanelTest, ACopyMadeMeanwhileAppears) {
    open({"one"});
    copy("two");
    EXPECT_THAT(found(), ElementsAre("two", "one"));
    EXPECT_EQ(selected(), "one");
}

TEST_F(ClipboardPanelTest, WithoutEntriesKeysDoNothing) {
    open({});
    EXPECT_TRUE(panel_->isHistoryEmpty());
    for (const auto code : {key::up, key::down, key::enter}) {
        EXPECT_TRUE(panel_->handle(code, 0));
    }
    EXPECT_TRUE(panel_->handle(key::backspace, flags::command));
    EXPECT_TRUE(panel_->handle(key::one, flags::command));
    EXPECT_TRUE(panel_->isVisible());
}

TEST_F(ClipboardPanelTest, OtherKeysAreLeftToTheSearchField) {
    open({"one"});
    EXPECT_FALSE(panel_->handle(key::a, 0));
    EXPECT_FALSE(panel_->handle(key::backspace, 0));
    EXPECT_FALSE(panel_->handle(key::one, 0));
    EXPECT_FALSE(panel_->handle(key::one, flags::command | flags::shift));
    EXPECT_FALSE(panel_->handle(key::enter, flags::control));
    EXPECT_FALSE(panel_->handle(key::a, flags::command));
    EXPECT_TRUE(panel_->isVisible());
}

TEST_F(ClipboardPanelTest, CommandDeleteRemovesAndTheNextOneIsSelected) {
    open({"one", "two", "three"});
    panel_->handle(key::down, 0);
    EXPECT_TRUE(panel_->handle(key::backspace, flags::command));
    EXPECT_THAT(found(), ElementsAre("three", "one"));
    EXPECT_EQ(selected(), "one");
    panel_->handle(key::backspace, flags::command);
    EXPECT_EQ(selected(), "three");
    panel_->handle(key::backspace, flags::command);
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_FALSE(panel_->selection());
}

// What is wrong, or off

TEST_F(ClipboardPanelTest, OpensWithKeptEntriesWhileItIsOffAndTurnsItOn) {
    open({"one", "two"}).close();
    setOption(&core::ClipboardOptions::enabled, false);
    panel_->toggle();
    EXPECT_THAT(found(), ElementsAre("two", "one"));
    EXPECT_TRUE(panel_->isRecordingOff());
    panel_->turnRecordingOn();
    EXPECT_FALSE(panel_->isRecordingOff());
    EXPECT_TRUE(manager_->options().enabled);
    EXPECT_TRUE(panel_->isVisible());
    copy("three");
    EXPECT_THAT(found(), ElementsAre("three", "two", "one"));
}

TEST_F(ClipboardPanelTest, PastesWhileItIsOff) {
    open({"one"}).close();
    setOption(&core::ClipboardOptions::enabled, false);
    panel_->toggle();
    panel_->handle(key::enter, 0);
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
}

TEST_F(ClipboardPanelTest, IsClosedAtTheChangeFromOnToOff) {
    open({"one"});
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_FALSE(panel_->isVisible());
    EXPECT_EQ(closed_, 1);
}

TEST_F(ClipboardPanelTest, OpeningItReadsAHistoryThatCouldNotBeRead) {
    open({"one"});
    pass(1s);
    panel_.reset();
    secretStore.failWith(core::SecretStatus::interactionNotAllowed);
    open({});
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_EQ(panel_->notice(), std::optional<core::LocalizedText>(texts::savedHistoryUnread));
    panel_->close();
    secretStore.failWith(core::SecretStatus::success);
    pass(10s);
    panel_->toggle();
    settle();
    EXPECT_THAT(found(), ElementsAre("one"));
    EXPECT_FALSE(panel_->notice());
}

TEST_F(ClipboardPanelTest, ANewerChoiceReplacesAPasteThatIsUnderWay) {
    open({"one", "two"});
    secureInput.setEnabled(true);
    panel_->handle(key::enter, 0);
    panel_->toggle();
    panel_->handle(key::down, 0);
    panel_->handle(key::enter, 0);
    secureInput.setEnabled(false);
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, ElementsAre(pasteKey()));
    EXPECT_EQ(onPasteboard(), "one");
}

TEST_F(ClipboardPanelTest, NothingIsPastedWhileThePanelIsOpenAgain) {
    open({"one"});
    panel_->handle(key::enter, 0);
    panel_->toggle();
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
}

TEST_F(ClipboardPanelTest, NothingIsPastedWhenSomethingElseWasCopied) {
    open({"one"});
    panel_->handle(key::enter, 0);
    pasteboard.copyText("two");
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
}

TEST_F(ClipboardPanelTest, NothingIsPastedWhenTheApplicationQuits) {
    open({"one"});
    panel_->handle(key::enter, 0);
    workspace.quit(editor_.pid);
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
}

TEST_F(ClipboardPanelTest, NothingIsPastedByAPanelThatHasGone) {
    open({"one"}).handle(key::enter, 0);
    panel_.reset();
    queue.advance(5s);
    EXPECT_THAT(keyEvents.posted, IsEmpty());
}

// What can go wrong

TEST_F(ClipboardPanelTest, WithoutAccessibilityItSaysHowToPaste) {
    permissions.revoke(core::MacPermission::accessibility);
    open({"one"}).handle(key::enter, 0);
    EXPECT_EQ(onPasteboard(), "one");
    EXPECT_TRUE(panel_->isVisible());
    EXPECT_EQ(panel_->message(), core::LocalizedText(texts::itemCopiedAllowAccessibility.on(core::Desktop::macOS)));
    panel_->toggle();
    panel_->toggle();
    EXPECT_FALSE(panel_->message());
}

TEST_F(ClipboardPanelTest, WithoutAnApplicationToReturnToItSaysSo) {
    open({"one"});
    workspace.quit(editor_.pid);
    panel_->handle(key::enter, 0);
    EXPECT_EQ(panel_->message(), core::LocalizedText(texts::itemCopiedReturnToApp.on(core::Desktop::macOS)));
    EXPECT_TRUE(panel_->isVisible());
}

TEST_F(ClipboardPanelTest, AMissingFileIsReportedAndNothingIsCopied) {
    start();
    const auto path = files.path() / "note.txt";
    std::ofstream(path) << "note";
    pasteboard.copy({{{{std::string(core::pasteboardTypes::fileUrl), "file://" + path.string()}}, {}}});
    pass(500ms);
    open({});
    ASSERT_THAT(panel_->filtered(), SizeIs(1));
    std::filesystem::remove(path);
    pasteboard.copyText("still here");
    panel_->handle(key::enter, 0);
    EXPECT_EQ(panel_->message(), core::LocalizedText(texts::originalFileIsGone));
    EXPECT_EQ(onPasteboard(), "still here");
    EXPECT_TRUE(panel_->isVisible());
}

TEST_F(ClipboardPanelTest, FileThatFinderHasCopiedIsPastedFromWhereItIsNow) {
    start();
    const auto path = files.file("note.txt");
    pasteboard.copyFiles({path});
    const auto url = pasteboard.items().front().flavours.front().second;
    pass(500ms);
    open({});
    ASSERT_THAT(panel_->filtered(), SizeIs(1));
    EXPECT_EQ(*panel_->filtered().front().text, "note.txt");
    pasteboard.move(path, files.path() / "renamed.txt");
    pasteboard.copyText("other");
    panel_->handle(key::enter, 0);
    EXPECT_EQ(pasteboard.items().front().flavours.front().second, url);
    EXPECT_FALSE(panel_->isVisible());
}

TEST_F(ClipboardPanelTest, APasteboardThatRefusesIsReported) {
    open({"one"});
    pasteboard.refuseWrites();
    panel_->handle(key::enter, 0);
    EXPECT_EQ(panel_->message(), core::LocalizedText(texts::cannotCopyItem));
}

TEST_F(ClipboardPanelTest, AMessageGoesWithTheNextSearch) {
    permissions.revoke(core::MacPermission::accessibility);
    open({"one"}).handle(key::enter, 0);
    panel_->setQuery("o");
    EXPECT_FALSE(panel_->message());
}

} // namespace
} // namespace quillane

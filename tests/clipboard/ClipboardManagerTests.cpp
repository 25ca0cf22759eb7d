// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardTest.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/localization/Texts.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Clearing = core::ClipboardHistory::Clearing;
using core::clipboardSnapshot::RestoreMode;
namespace texts = core::texts;

constexpr HotKey shortcut{9, core::flags::command | core::flags::shift};

using ClipboardManagerTest = testing::ClipboardTest;

// Collecting

TEST_F(ClipboardManagerTest, RecordsEveryCopyWithWhereItCameFrom) {
    start();
    copy("one");
    copy("two");
    EXPECT_THAT(recorded(), ElementsAre("one", "two"));
    EXPECT_EQ(manager_->history().entries()[0].source, "com.example.editor");
    EXPECT_EQ(manager_->history().entries()[0].sourceName, "Editor");
}

TEST_F(ClipboardManagerTest, APasteboardFilledAMomentLaterIsReadAgain) {
    start();
    pasteboard.copy({}); // emptied, to be filled
    pass(550ms);
    pasteboard.fillText("a moment later");
    pass(100ms);
    EXPECT_THAT(recorded(), ElementsAre("a moment later"));
    pass(2s);
    EXPECT_EQ(recorded().size(), 1U);
}

TEST_F(ClipboardManagerTest, AnEmptyPasteboardIsGivenUpAndOneFilledWhilePausedIsNotRecorded) {
    start();
    pasteboard.copy({});
    pass(2s);
    pasteboard.fillText("too late");
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
    pasteboard.copy({});
    pass(550ms);
    manager_->configure({.paused = true});
    pasteboard.fillText("secret");
    manager_->configure({});
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(ClipboardManagerTest, ThePasteboardAtLaunchIsNotRecorded) {
    pasteboard.copyText("before");
    start();
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(ClipboardManagerTest, ACopyWhileTheHistoryIsBeingLoadedIsNotRecorded) {
    make();
    manager_->start();
    pasteboard.copyText("too early");
    queue.advance(2s);
    EXPECT_FALSE(manager_->isReady());
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::loadingHistory));
    settle();
    pass(2s);
    EXPECT_TRUE(manager_->isReady());
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(ClipboardManagerTest, ACopyWhilePausedIsNeverRecorded) {
    start();
    manager_->configure({.paused = true});
    copy("secret");
    manager_->configure({});
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
    copy("later");
    EXPECT_THAT(recorded(), ElementsAre("later"));
}

TEST_F(ClipboardManagerTest, NothingIsRecordedWhileItIsOff) {
    start();
    setOption(&core::ClipboardOptions::enabled, false);
    copy("off");
    setOption(&core::ClipboardOptions::enabled, true);
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(ClipboardManagerTest, NoPasswordIsRecorded) {
    start();
    secureInput.setEnabled(true);
    copy("typed password");
    secureInput.setEnabled(false);
    workspace.activate(workspace.open("com.bitwarden.desktop", "Bitwarden"));
    copy("kept password");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(ClipboardManagerTest, ANoticeOfAChangeIsNotWaitedForByTheTimer) {
    pasteboard.announceChanges();
    start();
    for (int i = 0; i < 20; ++i) {
        pasteboard.copyText(std::to_string(i));
        queue.advance(50ms);
    }
    EXPECT_EQ(recorded().size(), 20U);
}

// The vault

TEST_F(ClipboardManagerTest, TheHistoryIsThereAgainAtTheNextStart) {
    start();
    copy("one");
    copy("two");
    manager_->pin(manager_->history().entries()[0].id);
    const auto before = manager_->history();
    start();
    EXPECT_EQ(manager_->history(), before);
    EXPECT_FALSE(manager_->hasStorageError());
}

TEST_F(ClipboardManagerTest, APinOfAnEntryThatIsStoredLasts) {
    start();
    copy("one");
    pass(1s);
    manager_->pin(manager_->history().entries()[0].id);
    pass(1s);
    start();
    EXPECT_TRUE(manager_->history().entries()[0].pinned);
}

TEST_F(ClipboardManagerTest, TenQuickCopiesAreOneWriteAQuarterSecondAfterTheLast) {
    pasteboard.announceChanges();
    start();
    pass(1s);
    for (int i = 0; i < 10; ++i) {
        pasteboard.copyText(std::to_string(i));
        queue.advance(20ms);
    }
    queue.advance(229ms);
    EXPECT_EQ(vaultQueue.count(), 0U);
    queue.advance(1ms);
    EXPECT_EQ(vaultQueue.count(), 1U);
    settle();
    EXPECT_EQ(stored().size(), 10U);
    pass(5s);
    EXPECT_EQ(stored().size(), 10U);
}

TEST_F(ClipboardManagerTest, StoppingSavesPendingChanges) {
    start();
    pasteboard.copyText("last");
    queue.advance(500ms); // the poll, and no save yet
    manager_->stop();
    EXPECT_THAT(stored(), ElementsAre("last"));
}

TEST_F(ClipboardManagerTest, StoppingBeforeTheHistoryIsLoadedKeepsIt) {
    start();
    copy("kept");
    make();
    manager_->start();
    EXPECT_FALSE(manager_->isReady());
    manager_->stop();
    EXPECT_THAT(stored(), ElementsAre("kept"));
}

TEST_F(ClipboardManagerTest, TurningPersistenceOffErasesTheFilesAndOnWritesThemAgain) {
    start();
    copy("one");
    pass(1s);
    setOption(&core::ClipboardOptions::persist, false);
    pass(1s);
    EXPECT_TRUE(isErased());
    EXPECT_THAT(recorded(), ElementsAre("one"));
    setOption(&core::ClipboardOptions::persist, true);
    pass(1s);
    EXPECT_THAT(stored(), ElementsAre("one"));
}

TEST_F(ClipboardManagerTest, WithoutPersistenceALaunchErasesTheFiles) {
    start();
    copy("one");
    manager_.reset();
    core::ClipboardOptions options;
    options.enabled = true;
    options.persist = false;
    userDefaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
    start();
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_TRUE(isErased());
    EXPECT_FALSE(manager_->hasStorageError());
}

TEST_F(ClipboardManagerTest, WithoutAKeyTheHistoryIsInMemoryOnly) {
    secretStore.failWith(core::SecretStatus::interactionNotAllowed);
    start();
    EXPECT_TRUE(manager_->isReady());
    EXPECT_TRUE(manager_->hasStorageError());
    copy("one");
    pass(1s);
    EXPECT_THAT(recorded(), ElementsAre("one"));
    EXPECT_TRUE(manager_->hasStorageError());
    EXPECT_TRUE(isErased());
}

TEST_F(ClipboardManagerTest, NothingComesBackAfterItHasGone) {
    start();
    copy("one");
    manager_->clear(Clearing::includePins);
    queue.advance(250ms); // the save waits on the queue
    manager_.reset();
    settle();
}

// The hot key and the status

TEST_F(ClipboardManagerTest, TheHotKeyIsThereWhileItIsOnAndNoOtherComputerIsInFront) {
    start();
    int toggles = 0;
    manager_->onTogglePanel = [&] { ++toggles; };
    EXPECT_TRUE(hotKeys.press(shortcut));
    EXPECT_EQ(toggles, 1);
    manager_->configure({.paused = true});
    EXPECT_TRUE(hotKeys.isRegistered(shortcut));
    manager_->configure({.remote = true});
    EXPECT_FALSE(hotKeys.isRegistered(shortcut));
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::clipboardHistoryPaused));
    manager_->configure({});
    EXPECT_TRUE(hotKeys.isRegistered(shortcut));
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_FALSE(hotKeys.isRegistered(shortcut));
}

TEST_F(ClipboardManagerTest, AHotKeyOfAnotherProgramIsReportedAndCanBeTriedAgain) {
    hotKeys.take(shortcut);
    start();
    EXPECT_TRUE(manager_->hasHotKeyConflict());
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::historyShortcutInUse.on(core::Desktop::macOS)));
    copy("still recorded");
    EXPECT_THAT(recorded(), ElementsAre("still recorded"));
    manager_->registerShortcut();
    settle();
    EXPECT_TRUE(manager_->hasHotKeyConflict());
    hotKeys.giveBack(shortcut);
    manager_->registerShortcut();
    settle();
    EXPECT_FALSE(manager_->hasHotKeyConflict());
    EXPECT_TRUE(hotKeys.isRegistered(shortcut));
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::clipboardHistoryActive));
}

TEST_F(ClipboardManagerTest, TheFirstConditionThatHoldsIsTheStatus) {
    hotKeys.take(shortcut);
    start();
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::clipboardHistoryOff));
    manager_->configure({.paused = true});
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::clipboardHistoryOff));
    setOption(&core::ClipboardOptions::enabled, true);
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::clipboardHistoryPaused));
    manager_->configure({});
    EXPECT_EQ(manager_->status(), core::LocalizedText(texts::historyShortcutInUse.on(core::Desktop::macOS)));
}

TEST_F(ClipboardManagerTest, ThePanelIsClosedWhenCollectionEnds) {
    start();
    int closes = 0;
    manager_->onClosePanel = [&] { ++closes; };
    manager_->configure({.paused = true});
    EXPECT_EQ(closes, 1);
    manager_->configure({});
    EXPECT_EQ(closes, 1);
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_EQ(closes, 2);
    manager_->onClosePanel = nullptr; // the manager stops after this test's count has gone
}

TEST_F(ClipboardManagerTest, TurningItOffWhilePausedClosesThePanelOnce) {
    start();
    int closes = 0;
    manager_->configure({.paused = true});
    manager_->onClosePanel = [&] { ++closes; };
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_EQ(closes, 1);
    setOption(&core::ClipboardOptions::pinsOnTop, false);
    EXPECT_EQ(closes, 1);
    manager_->onClosePanel = nullptr;
}

// Entries and options

TEST_F(ClipboardManagerTest, NoMoreThanTwoHundredEntriesArePinned) {
    start();
    pasteboard.announceChanges();
    auto options = manager_->options();
    options.limit = 1'000;
    manager_->setOptions(options);
    for (int i = 0; i <= 200; ++i) {
        copy(std::to_string(i));
    }
    const auto entries = manager_->history().entries();
    for (const auto& entry : entries) {
        manager_->pin(entry.id);
    }
    EXPECT_TRUE(manager_->history().entries()[199].pinned);
    EXPECT_FALSE(manager_->history().entries()[200].pinned);
    manager_->pin(entries[0].id);
    manager_->pin(entries[200].id);
    EXPECT_FALSE(manager_->history().entries()[0].pinned);
    EXPECT_TRUE(manager_->history().entries()[200].pinned);
}

TEST_F(ClipboardManagerTest, CopyingFromTheHistoryMakesNoNewEntryAndMovesItToTheTop) {
    start();
    copy("one");
    copy("two");
    const auto id = manager_->history().entries()[0].id;
    pass(1s); // entries of the same instant are ordered by identifier
    EXPECT_TRUE(manager_->copy(id, RestoreMode::full));
    const auto used = manager_->history().entries()[0].copiedAt;
    pass(2s);
    EXPECT_THAT(recorded(), ElementsAre("one", "two"));
    EXPECT_EQ(manager_->history().entries()[0].copiedAt, used); // it was not mistaken for a copy by the user
    EXPECT_EQ(*manager_->history().filtered("", manager_->options()).front().text, "one");
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::string), "one");
    EXPECT_FALSE(manager_->copy(core::Uuid::random(), RestoreMode::full));
}

TEST_F(ClipboardManagerTest, OptionsAreStoredAtOnceAndTrimTheHistory) {
    start();
    for (int i = 0; i < 15; ++i) {
        copy(std::to_string(i));
    }
    int notices = 0;
    const auto token = manager_->onChanged([&] { ++notices; });
    auto options = manager_->options();
    options.limit = 10;
    manager_->setOptions(options);
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(recorded().size(), 10U);
    EXPECT_EQ(core::decodeClipboardOptions(**userDefaults.data(core::clipboardOptionsKey)), options);
    pass(1s);
    EXPECT_EQ(stored().size(), 10U);
    manager_->setOptions(options);
    EXPECT_EQ(notices, 1);
}

TEST_F(ClipboardManagerTest, OptionsThatCannotBeReadAreTheDefaults) {
    userDefaults.setObject(core::clipboardOptionsKey, "text");
    EXPECT_EQ(start().options(), core::ClipboardOptions());
    EXPECT_FALSE(hotKeys.isRegistered(shortcut));
}

TEST_F(ClipboardManagerTest, ClearingKeepsPinsUnlessTheyAreMeant) {
    start();
    copy("one");
    copy("two");
    manager_->pin(manager_->history().entries()[1].id);
    manager_->clear(Clearing::keepPins);
    EXPECT_THAT(recorded(), ElementsAre("two"));
    manager_->clear(Clearing::includePins);
    pass(1s);
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_THAT(stored(), IsEmpty());
}

} // namespace
} // namespace quillane

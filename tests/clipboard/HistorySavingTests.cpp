// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardTest.hpp"

#include "core/clipboard/VaultLock.hpp"
#include "core/localization/Texts.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <optional>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Clearing = core::ClipboardHistory::Clearing;
using core::SecretStatus;
namespace fs = std::filesystem;
namespace texts = core::texts;

/// When and where the history is saved while it runs.
class HistorySavingTest : public testing::ClipboardTest {
protected:
    HistorySavingTest() { pasteboard.announceChanges(); }

    void takeFolderAway() {
        fs::remove_all(folder());
        std::ofstream(folder()) << "not a folder";
    }

    /// Another copy of the program that has this vault.
    [[nodiscard]] core::VaultLock otherProgram() const { return std::move(*core::VaultLock::acquire(folder())); }
};

TEST_F(HistorySavingTest, StreamOfCopiesWithoutAPauseIsOnTheDiskWithinThreeSeconds) {
    start();
    pass(1s);
    for (int i = 1; i <= 150; ++i) { // 30 s
        pasteboard.copyText(std::to_string(i));
        pass(200ms);
        if (i >= 15) {
            EXPECT_GE(stored().size(), static_cast<std::size_t>(i - 14)); // what is three seconds old
        }
    }
}

TEST_F(HistorySavingTest, CopiesWithinAStreamAreWrittenTogether) {
    start();
    pass(1s);
    int saves = 0;
    for (int i = 0; i < 150; ++i) {
        pasteboard.copyText(std::to_string(i));
        queue.advance(200ms);
        saves += static_cast<int>(vaultQueue.count());
        settle();
    }
    EXPECT_LE(saves, 12); // one every two and a half seconds
}

TEST_F(HistorySavingTest, DiskThatIsSlowerThanTheCopiesHasOneSaveAtATimeAndTheLatestInTheEnd) {
    start();
    pass(1s);
    for (int i = 0; i < 50; ++i) {
        pasteboard.copyText(std::to_string(i));
        queue.advance(200ms);
        EXPECT_LE(vaultQueue.count(), 1U);
    }
    settle();
    settle();
    EXPECT_EQ(stored().size(), 50U);
}

TEST_F(HistorySavingTest, FailedSaveIsTriedAgainEveryTenSeconds) {
    start();
    copy("one");
    pass(1s);
    takeFolderAway();
    copy("two");
    EXPECT_TRUE(manager_->hasStorageError());
    for (int i = 0; i < 6; ++i) {
        pass(10s);
        EXPECT_TRUE(manager_->hasStorageError());
    }
    fs::remove(folder());
    pass(10s);
    EXPECT_FALSE(manager_->hasStorageError());
    EXPECT_THAT(stored(), ElementsAre("one", "two"));
    EXPECT_EQ(queue.timerCount(), 1U); // the poll; nothing is tried any more
}

TEST_F(HistorySavingTest, FolderThatIsRemovedIsMadeAgainWithTheWholeHistory) {
    start();
    copy("one");
    pass(1s);
    fs::remove_all(folder().parent_path());
    copy("two");
    EXPECT_FALSE(manager_->hasStorageError());
    EXPECT_THAT(stored(), ElementsAre("one", "two"));
    EXPECT_FALSE(core::VaultLock::acquire(folder())); // the new one is this program's too
}

TEST_F(HistorySavingTest, HistoryThatIsPutInPlaceOfTheFolderIsSetAside) {
    start();
    copy("one");
    pass(1s);
    fs::rename(folder(), files.path() / "elsewhere");
    fs::copy(files.path() / "elsewhere", folder());
    copy("two");
    EXPECT_THAT(stored(), ElementsAre("one", "two"));
    ASSERT_THAT(manager_->setAside(), SizeIs(1));
    EXPECT_FALSE(manager_->hasStorageError());
}

// One vault, one writer

TEST_F(HistorySavingTest, VaultOfAnotherProgramIsLeftAloneAndThisHistoryIsInMemory) {
    start();
    copy("theirs");
    manager_.reset();
    const auto other = otherProgram();
    start();
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_TRUE(manager_->hasStorageError());
    EXPECT_TRUE(manager_->isUsedElsewhere());
    EXPECT_FALSE(manager_->isUnread());
    EXPECT_EQ(manager_->notice(), std::optional<core::LocalizedText>(texts::savedHistoryInUse));
    copy("own");
    pass(60s);
    EXPECT_THAT(recorded(), ElementsAre("own"));
    EXPECT_THAT(stored(), ElementsAre("theirs"));
    manager_->clear(Clearing::includePins);
    settle();
    setOption(&core::ClipboardOptions::persist, false);
    pass(1s);
    manager_->stop();
    EXPECT_THAT(stored(), ElementsAre("theirs"));
}

TEST_F(HistorySavingTest, VaultIsReadAndWrittenWhenTheOtherProgramHasGone) {
    start();
    copy("theirs");
    manager_.reset();
    std::optional other(otherProgram());
    start();
    copy("own");
    pass(30s);
    other.reset();
    pass(10s); // without another copy
    pass(1s);
    EXPECT_THAT(stored(), ElementsAre("theirs", "own"));
    EXPECT_FALSE(manager_->isUsedElsewhere());
    EXPECT_FALSE(manager_->notice());
}

TEST_F(HistorySavingTest, VaultIsFreeWhenTheProgramHasEnded) {
    start();
    EXPECT_FALSE(core::VaultLock::acquire(folder()));
    manager_->stop();
    EXPECT_TRUE(core::VaultLock::acquire(folder()));
}

TEST_F(HistorySavingTest, ProgramThatIsKeptOutMakesNoKey) {
    const auto other = otherProgram();
    start();
    EXPECT_EQ(secretStore.count(), 0U);
}

TEST_F(HistorySavingTest, ProgramWithoutAKeyKeepsNobodyOut) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    EXPECT_TRUE(core::VaultLock::acquire(folder()));
}

TEST_F(HistorySavingTest, LockedKeyringIsAskedEveryTenSecondsWhileSomethingIsUnsaved) {
    start();
    copy("before");
    pass(1s);
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    copy("meanwhile");
    pass(50s);
    const int asked = secretStore.searches();
    for (int i = 0; i < 10; ++i) {
        pass(10s); // no further copy
    }
    EXPECT_THAT(secretStore.searches() - asked, ::testing::AllOf(::testing::Ge(9), ::testing::Le(10)));
    secretStore.failWith(SecretStatus::success);
    pass(10s);
    pass(1s);
    EXPECT_THAT(stored(), ElementsAre("before", "meanwhile"));
    EXPECT_EQ(secretStore.count(), 1U);
}

// The clock

TEST_F(HistorySavingTest, CopiesAfterTheClockWasSetBackFollowThoseBefore) {
    start();
    auto options = manager_->options();
    options.limit = 10;
    manager_->setOptions(options);
    for (int i = 0; i < 10; ++i) {
        copy(std::to_string(i));
    }
    clockShift = -86'400;
    for (const auto* text : {"a", "b", "c"}) {
        copy(text);
    }
    EXPECT_THAT(recorded(), ElementsAre("3", "4", "5", "6", "7", "8", "9", "a", "b", "c"));
    EXPECT_EQ(*manager_->history().filtered("", options).front().text, "c");
    const auto& entries = manager_->history().entries();
    EXPECT_NEAR(entries[7].copiedAt.secondsSinceReferenceDate - entries[6].copiedAt.secondsSinceReferenceDate, 0.001,
                1e-6);
}

TEST_F(HistorySavingTest, EntryThatIsUsedAfterTheClockWasSetBackMovesToTheTop) {
    start();
    copy("one");
    copy("two");
    clockShift = -86'400;
    ASSERT_TRUE(manager_->copy(manager_->history().entries()[0].id, core::clipboardSnapshot::RestoreMode::full));
    EXPECT_EQ(*manager_->history().filtered("", manager_->options()).front().text, "one");
}

TEST_F(HistorySavingTest, DatesInTheFutureComeDownAtTheNextStartAndStayThere) {
    clockShift = 86'400;
    start();
    copy("one");
    copy("two");
    pass(1s);
    clockShift = 0;
    start();
    EXPECT_LE(manager_->history().entries()[1].copiedAt, now());
    EXPECT_LT(manager_->history().entries()[0].copiedAt, manager_->history().entries()[1].copiedAt);
    pass(1s);
    copy("three");
    pass(1s);
    const auto before = manager_->history();
    start();
    EXPECT_EQ(manager_->history(), before);
    EXPECT_EQ(*manager_->history().filtered("", manager_->options()).front().text, "three");
}

} // namespace
} // namespace quillane

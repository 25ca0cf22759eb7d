// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardTest.hpp"

#include "core/localization/Texts.hpp"

#include <gmock/gmock.h>

#include <fstream>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

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

/// A saved history that cannot be read at the next start, temporarily or for good.
class SavedHistoryTest : public testing::ClipboardTest {
protected:
    SavedHistoryTest() {
        start();
        for (const auto* text : {"one", "two", "three"}) {
            copy(text);
        }
        pass(1s);
        manager_.reset();
    }

    [[nodiscard]] fs::path fileOf(const std::string& text) {
        auto key = core::obtainVaultKey(secretStore);
        auto loaded = core::ClipboardVault::open(folder(), std::move(*key))->load();
        for (const auto& entry : loaded.value()) {
            if (*entry.text == text) {
                return folder() / (entry.id.toString() + ".clip");
            }
        }
        return {};
    }

    void damage(const std::string& text) { fs::resize_file(fileOf(text), 20); }

    /// The disk with the history is missing: something else is in its place.
    void takeDiskAway() {
        fs::rename(folder(), files.path() / "elsewhere");
        std::ofstream(folder()) << "not a folder";
    }

    void giveDiskBack() {
        fs::remove(folder());
        fs::rename(files.path() / "elsewhere", folder());
    }

    void recover() {
        manager_->recover(manager_->setAside().at(0));
        settle();
        settle(); // saves it
    }

    /// It is tried again, and saved.
    void passUntilRead() {
        pass(10s);
        pass(1s);
    }

    void expectNotice(const core::LocalizedText& text) const {
        EXPECT_EQ(manager_->notice(), std::optional<core::LocalizedText>(text));
    }

    [[nodiscard]] std::map<std::string, std::pair<ino_t, fs::file_time_type>> filesOnDisk() const {
        std::map<std::string, std::pair<ino_t, fs::file_time_type>> found;
        for (const auto& file : fs::directory_iterator(folder())) {
            struct stat status {};

            EXPECT_EQ(stat(file.path().c_str(), &status), 0);
            found[file.path().filename()] = {status.st_ino, file.last_write_time()};
        }
        found["."] = {0, fs::last_write_time(folder())};
        return found;
    }
};

TEST_F(SavedHistoryTest, StartWritesNothing) {
    const auto before = filesOnDisk();
    start();
    pass(5s);
    EXPECT_THAT(recorded(), ElementsAre("one", "two", "three"));
    EXPECT_EQ(filesOnDisk(), before);
    manager_.reset();
    EXPECT_EQ(filesOnDisk(), before);
}

// Damage

TEST_F(SavedHistoryTest, DamagedHistoryIsSetAsideAndANewOneBegins) {
    damage("two");
    start();
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_TRUE(manager_->hasStorageError());
    ASSERT_THAT(manager_->setAside(), SizeIs(1));
    expectNotice(texts::historyWasSetAside);
    copy("new");
    pass(1s);
    EXPECT_FALSE(manager_->hasStorageError());
    EXPECT_THAT(stored(), ElementsAre("new"));
    expectNotice(texts::historyWasSetAside);
    start(); // it stays until the user decides
    EXPECT_THAT(recorded(), ElementsAre("new"));
    EXPECT_THAT(manager_->setAside(), SizeIs(1));
}

TEST_F(SavedHistoryTest, NeitherQuittingNorAnOptionDeletesADamagedHistory) {
    damage("two");
    start();
    setOption(&core::ClipboardOptions::pinsOnTop, false);
    manager_->stop();
    start();
    ASSERT_THAT(manager_->setAside(), SizeIs(1));
    EXPECT_EQ(std::distance(fs::directory_iterator(manager_->setAside()[0].folder), {}), 4);
}

TEST_F(SavedHistoryTest, IntactEntriesAreRecoveredIntoThePresentHistory) {
    damage("two");
    start();
    copy("new");
    recover();
    EXPECT_THAT(recorded(), ElementsAre("one", "three", "new"));
    ASSERT_TRUE(manager_->lastRecovery());
    EXPECT_EQ(manager_->lastRecovery()->recovered, 2U);
    EXPECT_EQ(manager_->lastRecovery()->total, 3U);
    EXPECT_THAT(stored(), ElementsAre("one", "three", "new"));
    EXPECT_THAT(manager_->setAside(), SizeIs(1)); // it holds what could not be read
    recover();
    EXPECT_THAT(recorded(), ElementsAre("one", "three", "new"));
    manager_->forget(manager_->setAside().at(0));
    settle();
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    EXPECT_FALSE(manager_->notice());
}

TEST_F(SavedHistoryTest, AFullyRecoveredHistoryIsErased) {
    std::ofstream(folder() / "index") << "damaged";
    start();
    EXPECT_THAT(recorded(), IsEmpty());
    recover();
    EXPECT_THAT(stored(), ElementsAre("one", "two", "three"));
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    EXPECT_FALSE(manager_->notice());
}

TEST_F(SavedHistoryTest, EntriesBeyondTheLimitsStaySetAside) {
    std::ofstream(folder() / "index") << "damaged";
    start();
    auto options = manager_->options();
    options.limit = 10;
    manager_->setOptions(options);
    for (int i = 0; i < 9; ++i) {
        copy(std::to_string(i));
    }
    recover();
    EXPECT_EQ(manager_->lastRecovery()->recovered, 1U);
    EXPECT_EQ(recorded().size(), 10U);
    EXPECT_THAT(manager_->setAside(), SizeIs(1));
}

TEST_F(SavedHistoryTest, ClearingEverythingErasesWhatWasSetAsideAndClearingWithoutPinsDoesNot) {
    damage("two");
    start();
    manager_->clear(Clearing::keepPins);
    pass(1s);
    EXPECT_THAT(manager_->setAside(), SizeIs(1));
    manager_->clear(Clearing::includePins);
    settle();
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder().parent_path()), {}), 1);
}

TEST_F(SavedHistoryTest, TurningTheStorageOffErasesWhatWasSetAside) {
    damage("two");
    start();
    setOption(&core::ClipboardOptions::persist, false);
    pass(1s);
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder().parent_path()), {}), 1);
    EXPECT_TRUE(isErased());
}

// What may pass

TEST_F(SavedHistoryTest, NothingIsSavedOverAHistoryThatCannotBeReadNow) {
    const auto before = filesOnDisk();
    takeDiskAway();
    start();
    EXPECT_TRUE(manager_->hasStorageError());
    EXPECT_TRUE(manager_->isUnread());
    expectNotice(texts::savedHistoryUnread);
    copy("meanwhile");
    setOption(&core::ClipboardOptions::pinsOnTop, false);
    pass(1s);
    EXPECT_THAT(recorded(), ElementsAre("meanwhile"));
    manager_->stop();
    EXPECT_TRUE(fs::is_regular_file(folder()));
    giveDiskBack();
    EXPECT_EQ(filesOnDisk(), before);
}

TEST_F(SavedHistoryTest, EntryThatMayNotBeReadNowIsNotDamaged) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may read every file";
    }
    const auto file = fileOf("two");
    fs::permissions(file, fs::perms::none);
    start();
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    EXPECT_TRUE(manager_->isUnread());
    expectNotice(texts::savedHistoryUnread);
    copy("meanwhile");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    passUntilRead();
    EXPECT_THAT(recorded(), ElementsAre("one", "two", "three", "meanwhile"));
}

TEST_F(SavedHistoryTest, HistoryThatCanBeReadLaterIsMergedWithWhatWasCopiedMeanwhile) {
    takeDiskAway();
    start();
    copy("three");
    copy("meanwhile");
    manager_->pin(manager_->history().entries()[0].id);
    giveDiskBack();
    passUntilRead();
    EXPECT_THAT(recorded(), ElementsAre("one", "two", "three", "meanwhile"));
    EXPECT_TRUE(manager_->history().entries()[2].pinned);
    EXPECT_FALSE(manager_->hasStorageError());
    EXPECT_FALSE(manager_->isUnread());
    EXPECT_FALSE(manager_->notice());
    EXPECT_THAT(manager_->setAside(), IsEmpty());
    const auto merged = manager_->history();
    EXPECT_THAT(stored(), ElementsAre("one", "two", "three", "meanwhile"));
    start();
    EXPECT_EQ(manager_->history(), merged);
}

TEST_F(SavedHistoryTest, LockedKeyringIsAskedAgainWithTheSavesAndNotMoreOftenThanEveryTenSeconds) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    const int atStart = secretStore.searches();
    pass(60s); // nothing to save
    EXPECT_EQ(secretStore.searches(), atStart);
    for (int i = 0; i < 38; ++i) {
        copy(std::to_string(i)); // one every half second
    }
    EXPECT_LE(secretStore.searches(), atStart + 2);
    EXPECT_GE(secretStore.searches(), atStart + 1);
    secretStore.failWith(SecretStatus::success);
    passUntilRead();
    EXPECT_EQ(recorded().size(), 41U);
    EXPECT_EQ(stored().size(), 41U);
    EXPECT_FALSE(manager_->hasStorageError());
    const int found = secretStore.searches();
    copy("later");
    pass(60s);
    EXPECT_EQ(secretStore.searches(), found);
}

TEST_F(SavedHistoryTest, CopiesMadeWhileTheKeyringWasLockedAreSavedAtTheEnd) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    copy("meanwhile");
    secretStore.failWith(SecretStatus::success);
    manager_->stop();
    EXPECT_THAT(stored(), ElementsAre("one", "two", "three", "meanwhile"));
}

TEST_F(SavedHistoryTest, EntriesClearedBeforeTheyCanBeReadStayCleared) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    manager_->clear(Clearing::includePins);
    settle();
    EXPECT_TRUE(isErased()); // which needs no key
    EXPECT_FALSE(manager_->isUnread());
    copy("meanwhile");
    secretStore.failWith(SecretStatus::success);
    passUntilRead();
    EXPECT_THAT(stored(), ElementsAre("meanwhile"));
}

TEST_F(SavedHistoryTest, ClearingWithoutPinsBeforeItCanBeReadKeepsItsPins) {
    start();
    manager_->pin(manager_->history().entries()[1].id);
    pass(1s);
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    manager_->clear(Clearing::keepPins);
    copy("meanwhile");
    secretStore.failWith(SecretStatus::success);
    passUntilRead();
    EXPECT_THAT(recorded(), ElementsAre("two", "meanwhile"));
    EXPECT_THAT(stored(), ElementsAre("two", "meanwhile"));
}

TEST_F(SavedHistoryTest, TurningTheStorageOffBeforeItCanBeReadErasesIt) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    copy("meanwhile");
    setOption(&core::ClipboardOptions::persist, false);
    pass(1s);
    EXPECT_TRUE(isErased());
    EXPECT_FALSE(manager_->isUnread());
    secretStore.failWith(SecretStatus::success);
    setOption(&core::ClipboardOptions::persist, true);
    passUntilRead();
    EXPECT_THAT(stored(), ElementsAre("meanwhile"));
}

TEST_F(SavedHistoryTest, WithoutAnySavedHistoryItIsOnlySaidThatNoneIsSaved) {
    fs::remove_all(folder());
    secretStore.failWith(SecretStatus::notAvailable);
    start();
    EXPECT_FALSE(manager_->isUnread());
    expectNotice(texts::cannotSaveHistory);
}

TEST_F(SavedHistoryTest, ReadingIsTriedAgainWhenSomebodyWantsToSeeIt) {
    secretStore.failWith(SecretStatus::interactionNotAllowed);
    start();
    secretStore.failWith(SecretStatus::success);
    pass(11s);
    EXPECT_THAT(recorded(), IsEmpty());
    manager_->readAgain();
    settle();
    EXPECT_THAT(recorded(), ElementsAre("one", "two", "three"));
}

} // namespace
} // namespace quillane

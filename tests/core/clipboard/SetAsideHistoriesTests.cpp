// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/SetAsideHistories.hpp"

#include "core/clipboard/VaultLock.hpp"
#include "core/clipboard/VaultTest.hpp"

#include <gmock/gmock.h>

#include <cerrno>

#include <sys/resource.h>
#include <unistd.h>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::textEntry;

class SetAsideHistoriesTest : public testing::VaultTest {
protected:
    [[nodiscard]] std::vector<SetAsideHistory> all() const {
        auto found = setAsideHistories::list(folder_);
        EXPECT_TRUE(found);
        return found.value_or(std::vector<SetAsideHistory>());
    }

    /// Saves a history and sets it aside.
    void setAside(const std::vector<ClipboardEntry>& entries, Date date) {
        saved(entries);
        auto open = vault();
        ASSERT_TRUE(open.setAside(date));
    }

    [[nodiscard]] ClipboardVault::Recovered recover(SecretBytes key = testing::testKey()) const {
        const auto found = vault(std::move(key)).recover(all().at(0).folder);
        EXPECT_TRUE(found);
        return found.value_or(ClipboardVault::Recovered());
    }

    const std::vector<ClipboardEntry> entries_{textEntry("one", 1), textEntry("two", 2), textEntry("three", 3)};
    static constexpr Date noon{785'592'000}; // 2025-11-23 12:00:00 UTC
};

TEST_F(SetAsideHistoriesTest, WholeFolderIsKeptUnderADatedNameAndAnEmptyOneBegins) {
    saved(entries_);
    const auto before = fileNames();
    auto open = vault();
    ASSERT_TRUE(open.setAside(Date{noon.secondsSinceReferenceDate + 0.75}));
    EXPECT_THAT(fileNames(), IsEmpty());
    ASSERT_THAT(all(), SizeIs(1));
    EXPECT_EQ(all()[0].folder, folder_.parent_path() / "ClipboardHistory-2025-11-23T120000Z");
    EXPECT_EQ(all()[0].date, noon);
    const auto kept = all()[0].folder;
    const auto next = textEntry("next", 4);
    ASSERT_TRUE(open.save(std::vector{next}));
    EXPECT_EQ(vault().load(), std::vector{next});
    folder_ = kept;
    EXPECT_EQ(fileNames(), before);
    EXPECT_EQ(vault().load(), entries_);
}

TEST_F(SetAsideHistoriesTest, NoMoreThanThreeAreKeptAndTheOldestGoes) {
    for (int i = 0; i < 5; ++i) {
        setAside({textEntry(std::to_string(i), i)}, Date{noon.secondsSinceReferenceDate + i * 86'400.0});
    }
    ASSERT_THAT(all(), SizeIs(3));
    EXPECT_EQ(all()[0].date.secondsSinceReferenceDate, noon.secondsSinceReferenceDate + 4 * 86'400.0);
    EXPECT_EQ(all()[2].date.secondsSinceReferenceDate, noon.secondsSinceReferenceDate + 2 * 86'400.0);
    EXPECT_EQ(*recover().entries.at(0).text, "4");
}

TEST_F(SetAsideHistoriesTest, LatestOneIsKeptWhenTheClockWasSetBack) {
    for (int i = 0; i < 5; ++i) {
        setAside({textEntry(std::to_string(i), i)}, Date{noon.secondsSinceReferenceDate - i * 86'400.0});
    }
    ASSERT_THAT(all(), SizeIs(3));
    EXPECT_EQ(*recover().entries.at(0).text, "4");
    EXPECT_EQ(all()[0].date.secondsSinceReferenceDate, noon.secondsSinceReferenceDate + 4);
}

TEST_F(SetAsideHistoriesTest, LockStaysWithTheVaultAndNotWithWhatIsSetAside) {
    saved(entries_);
    const auto lock = VaultLock::acquire(folder_);
    auto open = vault();
    ASSERT_TRUE(open.setAside(noon));
    EXPECT_FALSE(lock->holds(folder_));
    EXPECT_FALSE(std::filesystem::exists(all().at(0).folder / "lock"));
    ASSERT_TRUE(setAsideHistories::erase(all().at(0)));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.parent_path()), {}), 1);
}

TEST_F(SetAsideHistoriesTest, TwoOfOneSecondAreBothKept) {
    setAside({entries_[0]}, noon);
    setAside({entries_[1]}, noon);
    ASSERT_THAT(all(), SizeIs(2));
    EXPECT_EQ(*recover().entries.at(0).text, "two"); // the latest first
}

TEST_F(SetAsideHistoriesTest, ErasingLeavesTheHistoryAndForeignFiles) {
    setAside(entries_, noon);
    setAside(entries_, Date{0});
    write(all()[0].folder / "notes.txt", "kept");
    saved(entries_);
    ASSERT_TRUE(setAsideHistories::eraseAll(folder_));
    EXPECT_THAT(all(), IsEmpty());
    EXPECT_EQ(vault().load(), entries_);
    std::size_t folders = 0;
    for (const auto& beside : std::filesystem::directory_iterator(folder_.parent_path())) {
        folders += beside.path() != folder_ ? 1 : 0;
    }
    EXPECT_EQ(folders, 1U); // that with the notes
    EXPECT_TRUE(setAsideHistories::eraseAll(root_ / "none" / "ClipboardHistory"));
}

TEST_F(SetAsideHistoriesTest, OtherNamesBesideTheVaultAreNone) {
    saved(entries_);
    const auto beside = [&](const char* name) { return folder_.parent_path() / name; };
    for (const auto* name :
         {"ClipboardHistory-backup", "ClipboardHistory-2025-13-23T120000Z", "ClipboardHistory-2025-11-23", "Other"}) {
        std::filesystem::copy(folder_, beside(name));
    }
    std::filesystem::create_directory(beside("ClipboardHistory-2025-11-23T120000Z")); // nothing in it
    write(beside("ClipboardHistory-2025-11-24T120000Z"), "a file");
    std::filesystem::create_symlink("nowhere", beside("ClipboardHistory-2025-11-25T120000Z"));
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(SetAsideHistoriesTest, FolderThatCannotBeMovedStaysAsItIs) {
    saved(entries_);
    EXPECT_FALSE(setAsideHistories::add(root_ / "none", noon));
    EXPECT_EQ(vault().load(), entries_);
}

// Recovering

TEST_F(SetAsideHistoriesTest, IntactEntriesAreRecoveredInOrder) {
    saved(entries_);
    std::filesystem::resize_file(fileOf(entries_[1]), 20);
    EXPECT_FALSE(vault().load());
    ASSERT_TRUE(vault().setAside(noon));
    const auto recovered = recover();
    EXPECT_EQ(recovered.entries, (std::vector{entries_[0], entries_[2]}));
    EXPECT_EQ(recovered.total, 3U);
}

TEST_F(SetAsideHistoriesTest, WithoutItsIndexEveryEntryIsRecoveredByItsDate) {
    saved({entries_[2], entries_[0], entries_[1]});
    write(folder_ / "index", "damaged");
    ASSERT_TRUE(vault().setAside(noon));
    const auto recovered = recover();
    EXPECT_EQ(recovered.entries, entries_);
    EXPECT_EQ(recovered.total, 3U);
}

TEST_F(SetAsideHistoriesTest, EntryThatWasDeletedBeforeIsNotRecovered) {
    saved(entries_);
    const auto file = contents(fileOf(entries_[0]));
    saved({entries_[1], entries_[2]});
    write(fileOf(entries_[0]), file); // as if the process had been killed before its removal
    std::filesystem::resize_file(fileOf(entries_[1]), 20);
    ASSERT_TRUE(vault().setAside(noon));
    EXPECT_EQ(recover().entries, std::vector{entries_[2]});
}

TEST_F(SetAsideHistoriesTest, SaveThatCountedAsDoneIsRecoveredAsItWas) {
    saved(entries_);
    auto touched = entries_;
    touched[0].copiedAt = Date{9};
    saved(touched);
    const auto first = contents(fileOf(entries_[0]));
    const auto index = contents(folder_ / "index");
    saved(entries_);
    write(folder_ / ("pending-" + entries_[0].id.toString() + ".clip"), first);
    write(folder_ / "pending-index.clip", index);
    std::filesystem::resize_file(fileOf(entries_[1]), 20);
    ASSERT_TRUE(vault().setAside(noon));
    EXPECT_EQ(recover().entries, (std::vector{touched[0], touched[2]}));
}

TEST_F(SetAsideHistoriesTest, NothingIsRecoveredUnderAnotherKey) {
    setAside(entries_, noon);
    const auto recovered = recover(SecretBytes(std::vector(32, std::byte{1})));
    EXPECT_THAT(recovered.entries, IsEmpty());
    EXPECT_EQ(recovered.total, 3U);
}

TEST_F(SetAsideHistoriesTest, NothingIsMadeWhereThereIsNothingToRecover) {
    const auto recovered = vault().recover(root_ / "gone");
    ASSERT_TRUE(recovered);
    EXPECT_EQ(recovered->total, 0U);
    EXPECT_FALSE(std::filesystem::exists(root_ / "gone"));
}

// What is damage

TEST_F(SetAsideHistoriesTest, FailureOfTheSystemIsNotDamage) {
    saved(entries_);
    auto open = vault();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int lowest = dup(STDERR_FILENO); // the next descriptor that would be given
    close(lowest);
    const rlimit none{static_cast<rlim_t>(lowest), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const auto loaded = open.load();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    ASSERT_FALSE(loaded);
    EXPECT_EQ(loaded.error().systemError, EMFILE);
    EXPECT_FALSE(loaded.error().isDamage());
    EXPECT_EQ(open.load(), entries_);
}

TEST_F(SetAsideHistoriesTest, OnlyReadingExistingFilesRevealsDamage) {
    using Reason = VaultError::Reason;
    for (const auto reason : {Reason::read, Reason::tooLarge, Reason::notAuthentic, Reason::malformed}) {
        EXPECT_TRUE((VaultError{reason, 0}.isDamage()));
    }
    for (const auto reason : {Reason::noKey, Reason::wrongKeySize, Reason::folder, Reason::write, Reason::crypto}) {
        EXPECT_FALSE((VaultError{reason, 0}.isDamage()));
    }
    for (const int number : {EIO, ESTALE, EACCES, ENOMEM}) {
        EXPECT_FALSE((VaultError{Reason::read, number}.isDamage()));
    }
}

TEST_F(SetAsideHistoriesTest, NameThatCannotBeLookedForIsNotAbsent) {
    const auto folder = VaultFolder::open(folder_);
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->contains("index"), false);
    const auto looked = folder->contains(std::string(1000, 'x'));
    ASSERT_FALSE(looked);
    EXPECT_EQ(looked.error().systemError, ENAMETOOLONG);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"
#include "core/support/Utf8.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include <sys/stat.h>

namespace quillane::core {
namespace {

using testing::bytesOf;
using ::testing::ElementsAre;
using namespace std::string_literals;
using testing::testKey;
using testing::textEntry;
using Reason = VaultError::Reason;

class ClipboardVaultTest : public testing::VaultTest {
protected:
    using Inodes = std::map<std::string, ino_t>;

    /// Distinguishes rewritten files from the others.
    Inodes inodes() const {
        Inodes found;
        for (const auto& name : fileNames()) {
            struct stat status {};

            EXPECT_EQ(stat((folder_ / name).c_str(), &status), 0);
            found[name] = status.st_ino;
        }
        return found;
    }

    static mode_t modeOf(const std::filesystem::path& file) {
        struct stat status {};

        EXPECT_EQ(stat(file.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }
};

std::vector<ClipboardEntry> threeEntries() {
    auto pinned = ClipboardEntry::make(ClipboardKind::files, "a\nb", "", "Files", {}, Date{0.1});
    pinned.pinned = true;
    pinned.createdAt = Date{-63'113'904'000.25};
    pinned.items =
        ClipboardItems{{{"public.file-url", bytesOf("file:///a")}}, {{"public.file-url", bytesOf("file:///b")}}};
    auto image =
        ClipboardEntry::make(ClipboardKind::image, "", "com.example.draw", "צייר", {}, Date{std::nextafter(7e8, 8e8)});
    image.items =
        ClipboardItems{{{"public.png", std::vector<std::byte>(70'000, std::byte{200})}, {"public.tiff", bytesOf("")}}};
    return {textEntry("שלום \0\x01 😀\r\n"s, 7e8 + 1.0 / 3), pinned, image};
}

TEST_F(ClipboardVaultTest, LoadsSavedEntriesWithEveryFieldAndInOrder) {
    const auto entries = threeEntries();
    saved(entries);
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, DatesDoNotDrift) {
    std::vector<ClipboardEntry> entries;
    for (const double seconds : {0.0, -0.0, 1e-300, 0.1, 7e8 + 1e-7, -1e15, 786'412'345.123456789}) {
        entries.push_back(textEntry("x", seconds));
    }
    for (int round = 0; round < 5; ++round) {
        saved(entries);
        auto again = *vault().load();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            EXPECT_EQ(again[i].copiedAt, entries[i].copiedAt);
            EXPECT_EQ(again[i].createdAt, entries[i].createdAt);
        }
        entries = again;
    }
}

TEST_F(ClipboardVaultTest, AnEmptyFolderIsAnEmptyHistory) {
    EXPECT_EQ(vault().load(), std::vector<ClipboardEntry>());
}

TEST_F(ClipboardVaultTest, AnEmptyHistoryHasAnIndex) {
    saved({});
    EXPECT_EQ(fileNames(), std::set<std::string>{"index"});
    EXPECT_EQ(vault().load(), std::vector<ClipboardEntry>());
}

TEST_F(ClipboardVaultTest, TheKeyHasExactly32Bytes) {
    for (const std::size_t size : {0U, 31U, 33U}) {
        const auto opened = ClipboardVault::open(folder_, *SecretBytes::random(size));
        ASSERT_FALSE(opened);
        EXPECT_EQ(opened.error().reason, Reason::wrongKeySize);
    }
    EXPECT_FALSE(std::filesystem::exists(folder_));
}

TEST_F(ClipboardVaultTest, FilesAreNamedByUpperCaseIdentifiers) {
    const auto entries = threeEntries();
    saved(entries);
    std::set<std::string> expected{"index"};
    for (const auto& entry : entries) {
        expected.insert(entry.id.toString() + ".clip");
    }
    EXPECT_EQ(fileNames(), expected);
}

TEST_F(ClipboardVaultTest, OnlyTheUserMayReadWhateverTheMask) {
    for (const mode_t mask : std::initializer_list<mode_t>{0, 0777}) {
        std::filesystem::remove_all(folder_.parent_path());
        const mode_t before = umask(mask);
        auto opened = ClipboardVault::open(folder_, testKey());
        const bool isSaved = opened && opened->save(threeEntries());
        umask(before);
        ASSERT_TRUE(isSaved) << "mask " << mask;
        EXPECT_EQ(modeOf(folder_.parent_path()), 0700U);
        EXPECT_EQ(modeOf(folder_), 0700U);
        EXPECT_EQ(fileNames().size(), 4U);
        for (const auto& name : fileNames()) {
            EXPECT_EQ(modeOf(folder_ / name), 0600U) << name;
        }
    }
}

TEST_F(ClipboardVaultTest, AFolderThatOthersCouldEnterIsClosed) {
    std::filesystem::create_directories(folder_);
    chmod(folder_.c_str(), 0755);
    EXPECT_TRUE(vault().load());
    EXPECT_EQ(modeOf(folder_), 0700U);
}

TEST_F(ClipboardVaultTest, ATrailingSlashMakesNoDifference) {
    folder_ /= "";
    saved(threeEntries());
    EXPECT_EQ(vault().load()->size(), 3U);
}

TEST_F(ClipboardVaultTest, NothingReadableIsInTheFiles) {
    saved({textEntry("a secret of mine that nobody reads", 1)});
    for (const auto& name : fileNames()) {
        const auto bytes = contents(folder_ / name);
        EXPECT_EQ(bytes.find("secret"), std::string::npos);
        EXPECT_EQ(bytes.find("bplist"), std::string::npos);
    }
}

// Incremental saving

TEST_F(ClipboardVaultTest, ANewEntryWritesTwoFiles) {
    auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    const auto before = inodes();
    entries.push_back(textEntry("new", 9));
    ASSERT_TRUE(open.save(entries));
    std::vector<std::string> written;
    for (const auto& [name, inode] : inodes()) {
        if (!before.contains(name) || before.at(name) != inode) {
            written.push_back(name);
        }
    }
    EXPECT_THAT(written, ::testing::UnorderedElementsAre("index", entries[3].id.toString() + ".clip"));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, ATouchedEntryIsWrittenAgain) {
    auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    entries[1].copiedAt = Date{1e9};
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, ManyChangesAtOnceAreSaved) {
    auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    entries[0].copiedAt = Date{1e9};
    entries[1].copiedAt = Date{1e9};
    entries.pop_back();
    entries.push_back(textEntry("new", 1e9));
    std::ranges::reverse(entries);
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
    EXPECT_EQ(fileNames().size(), 4U);
}

TEST_F(ClipboardVaultTest, APinAloneIsNotWrittenUntilTheCacheIsInvalidated) {
    auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    entries[0].pinned = true;
    ASSERT_TRUE(open.save(entries));
    EXPECT_FALSE(vault().load()->front().pinned);
    open.invalidateCache();
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, OneEntryCanBeWrittenAgain) {
    auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    const auto before = inodes();
    entries[0].pinned = true;
    open.invalidateCache(entries[0].id);
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
    EXPECT_EQ(inodes().at(entries[1].id.toString() + ".clip"), before.at(entries[1].id.toString() + ".clip"));
}

TEST_F(ClipboardVaultTest, AFreshVaultWritesEveryEntryAndEveryNonceIsNew) {
    const auto entries = threeEntries();
    saved(entries);
    std::map<std::string, std::string> before;
    for (const auto& name : fileNames()) {
        before[name] = contents(folder_ / name).substr(0, 12);
    }
    saved(entries);
    for (const auto& [name, nonce] : before) {
        EXPECT_NE(contents(folder_ / name).substr(0, 12), nonce) << name;
    }
}

TEST_F(ClipboardVaultTest, RemovesTheFilesOfEntriesThatAreGoneAndStrayOnes) {
    const auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    write(folder_ / "E621E1F8-C36C-495A-93FC-0C247A3E6E5F.clip", "stray");
    write(folder_ / "stray.clip", "stray");
    write(folder_ / (lowercased(entries[1].id.toString()) + ".clip"), "stray");
    write(folder_ / "temporary-31D4F6A8-1E52-4B6B-9C43-7B6C9F1C1B11.clip", "of a killed process");
    write(folder_ / "notes.txt", "kept");
    write(folder_ / ".clip", "kept");
    ASSERT_TRUE(open.save(std::vector{entries[1]}));
    EXPECT_EQ(fileNames(), (std::set<std::string>{"index", entries[1].id.toString() + ".clip", "notes.txt", ".clip"}));
}

TEST_F(ClipboardVaultTest, WithoutItsIndexTheHistoryStartsEmptyAndTheNextSaveCleansUp) {
    saved(threeEntries());
    std::filesystem::remove(folder_ / "index");
    EXPECT_EQ(vault().load(), std::vector<ClipboardEntry>());
    const auto entry = textEntry("new", 1);
    saved({entry});
    EXPECT_EQ(fileNames(), (std::set<std::string>{"index", entry.id.toString() + ".clip"}));
}

TEST_F(ClipboardVaultTest, ErasingRemovesTheFilesAndForgetsThem) {
    const auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    write(folder_ / "notes.txt", "kept");
    ASSERT_TRUE(open.erase());
    EXPECT_EQ(fileNames(), std::set<std::string>{"notes.txt"});
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, FilesAreErasedWithoutTheKeyOfTheirVault) {
    auto open = vault();
    const auto entries = threeEntries();
    ASSERT_TRUE(open.save(entries));
    ASSERT_TRUE(ClipboardVault::eraseFiles(folder_));
    EXPECT_TRUE(fileNames().empty());
    open.invalidateCache();
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, ErasingAFolderThatDoesNotExistMakesNone) {
    EXPECT_TRUE(ClipboardVault::eraseFiles(root_ / "none" / "here"));
    EXPECT_FALSE(std::filesystem::exists(root_ / "none"));
}

TEST_F(ClipboardVaultTest, LoadedHistoryIsNotWrittenAgain) {
    auto entries = threeEntries();
    saved(entries);
    const auto before = inodes();
    const auto changed = std::filesystem::last_write_time(folder_);
    auto open = vault();
    ASSERT_EQ(open.load(), entries);
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(inodes(), before);
    EXPECT_EQ(std::filesystem::last_write_time(folder_), changed);
    entries[1].copiedAt = Date{1e9};
    ASSERT_TRUE(open.save(entries));
    auto after = inodes();
    const auto name = entries[1].id.toString() + ".clip";
    EXPECT_NE(after.at(name), before.at(name));
    after[name] = before.at(name);
    EXPECT_EQ(after, before);
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, AMissingFileIsWrittenAlthoughItsEntryHasNotChanged) {
    const auto entries = threeEntries();
    saved(entries);
    auto open = vault();
    ASSERT_EQ(open.load(), entries);
    std::filesystem::remove(fileOf(entries[0]));
    std::filesystem::remove(folder_ / "index");
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, EveryFileIsWrittenAgainAfterALoadThatFailed) {
    const auto entries = threeEntries();
    auto open = vault();
    ASSERT_TRUE(open.save(entries));
    write(fileOf(entries[0]), "damaged");
    ASSERT_FALSE(open.load());
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(ClipboardVaultTest, ErasedFilesAreWrittenAgainAfterALoad) {
    const auto entries = threeEntries();
    saved(entries);
    auto open = vault();
    ASSERT_EQ(open.load(), entries);
    ASSERT_TRUE(open.erase());
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

// A save that was cut short

TEST_F(ClipboardVaultTest, ASaveThatCountsAsDoneIsLoadedAndFinishedByTheNextOne) {
    const auto before = threeEntries();
    auto after = before;
    after[0].copiedAt = Date{1e9};
    after[1].copiedAt = Date{1e9};
    saved(after);
    const auto first = contents(fileOf(after[0]));
    const auto index = contents(folder_ / "index");
    saved(before);
    write(folder_ / ("pending-" + after[0].id.toString() + ".clip"), first);
    EXPECT_EQ(vault().load(), before);
    write(folder_ / "pending-index.clip", index);
    auto expected = before;
    expected[0].copiedAt = Date{1e9};
    EXPECT_EQ(vault().load(), expected);
    saved(expected);
    EXPECT_EQ(vault().load(), expected);
    EXPECT_EQ(fileNames().size(), 4U);
}

TEST_F(ClipboardVaultTest, AFinishedFileOfARemovedEntryIsRemovedByTheSameSave) {
    const auto entries = threeEntries();
    saved(entries);
    const auto first = contents(fileOf(entries[0]));
    const auto index = contents(folder_ / "index");
    const std::vector left{entries[1]};
    saved(left);
    write(folder_ / ("pending-" + entries[0].id.toString() + ".clip"), first);
    write(folder_ / "pending-index.clip", index);
    saved(left);
    EXPECT_EQ(vault().load(), left);
    EXPECT_EQ(fileNames(), (std::set<std::string>{"index", entries[1].id.toString() + ".clip"}));
}

TEST_F(ClipboardVaultTest, FilesOfAnUnfinishedSaveAreNeverUsed) {
    const auto entries = threeEntries();
    saved(entries);
    auto other = entries[0];
    other.pinned = true;
    testing::VaultTest::write(folder_ / ("pending-" + entries[0].id.toString() + ".clip"),
                              contents(fileOf(entries[1])));
    EXPECT_EQ(vault().load(), entries);
    saved(entries);
    EXPECT_EQ(vault().load(), entries);
    EXPECT_EQ(fileNames().size(), 4U);
}

} // namespace
} // namespace quillane::core

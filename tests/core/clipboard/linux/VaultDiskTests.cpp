// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultFaultTest.hpp"
#include "support/SmallDisk.hpp"

#include <cerrno>

#include <sys/mount.h>

namespace quillane::core {
namespace {

using testing::inChild;
using testing::manyEntries;
using testing::notPermitted;
using testing::testKey;

class VaultDiskTest : public testing::VaultFaultTest {
protected:
    /// A small file system of memory in place of the folder, that only the calling process sees.
    std::string mountSmallDisk() const {
        std::filesystem::create_directories(folder_);
        if (!live::separateMounts() || !live::mountSmallDisk(folder_, "256k")) {
            return "not permitted";
        }
        return {};
    }
};

TEST_F(VaultDiskTest, AFullDiskFailsTheSaveAndKeepsTheHistoryBefore) {
    const int result = inChild([&]() -> std::string {
        if (auto problem = mountSmallDisk(); !problem.empty()) {
            return problem;
        }
        auto open = vault();
        const auto before = manyEntries(3, 10'000, 1);
        if (!open.save(before)) {
            return "the first save failed";
        }
        auto after = before;
        for (auto& entry : after) {
            entry.copiedAt = Date{2};
        }
        const auto more = manyEntries(10, 50'000, 2);
        after.insert(after.end(), more.begin(), more.end());
        if (auto problem = checkFailedSave(open, before, after, ENOSPC); !problem.empty()) {
            return problem;
        }
        // A shorter history makes room, because it removes what the failed save has left.
        if (!open.save(before) || open.load() != before) {
            return "the save of the history before failed";
        }
        after.resize(4);
        if (!open.save(after) || open.load() != after) {
            return "the save with room failed";
        }
        return {};
    });
    if (result == notPermitted) {
        GTEST_SKIP() << "mounting a file system is not permitted here";
    }
    EXPECT_EQ(result, 0);
}

TEST_F(VaultDiskTest, DiskWithLessRoomThanTheHistoryTakesWhatIsNewAlsoAfterARestart) {
    const int result = inChild([&]() -> std::string {
        if (auto problem = mountSmallDisk(); !problem.empty()) {
            return problem;
        }
        auto entries = manyEntries(10, 15'000, 1); // of 256 KiB at most 100 are left
        {
            auto open = vault();
            if (!open.save(entries)) {
                return "the first save failed";
            }
        }
        auto open = vault();
        if (open.load() != entries) {
            return "the history cannot be loaded";
        }
        entries.push_back(manyEntries(1, 15'000, 2).front());
        if (!open.save(entries) || open.load() != entries) {
            return "one that is new cannot be saved";
        }
        for (auto& entry : entries) {
            entry.copiedAt = Date{3};
        }
        open.invalidateCache();
        if (!open.save(entries) || open.load() != entries) {
            return "the whole history cannot be saved again";
        }
        const auto large = manyEntries(1, 80'000, 4).front();
        entries.erase(entries.begin(), entries.begin() + 5); // as the limit on bytes does
        entries.push_back(large);
        if (!open.save(entries) || open.load() != entries) {
            return "what is gone makes no room";
        }
        const auto before = entries;
        entries.push_back(manyEntries(1, 150'000, 5).front());
        const auto files = fileNames();
        if (auto problem = checkFailedSave(open, before, entries, ENOSPC); !problem.empty()) {
            return problem;
        }
        return fileNames() == files ? "" : "the save has left files";
    });
    if (result == notPermitted) {
        GTEST_SKIP() << "mounting a file system is not permitted here";
    }
    EXPECT_EQ(result, 0);
}

TEST_F(VaultDiskTest, AReadOnlyFolderFailsTheSaveAndStillLoads) {
    const int result = inChild([&]() -> std::string {
        if (auto problem = mountSmallDisk(); !problem.empty()) {
            return problem;
        }
        const auto before = manyEntries(2, 100, 1);
        auto open = vault();
        if (!open.save(before)) {
            return "the first save failed";
        }
        if (mount(nullptr, folder_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
            return "not permitted";
        }
        auto after = before;
        after[0].copiedAt = Date{2};
        if (auto problem = checkFailedSave(open, before, after, EROFS); !problem.empty()) {
            return problem;
        }
        if (open.erase()) {
            return "erasing did not fail";
        }
        return ClipboardVault::open(folder_, testKey()) ? "" : "the vault did not open again";
    });
    if (result == notPermitted) {
        GTEST_SKIP() << "mounting a file system is not permitted here";
    }
    EXPECT_EQ(result, 0);
}

} // namespace
} // namespace quillane::core

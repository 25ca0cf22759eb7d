// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// This program's own calls of the system take the place of those of the C library, for the vault too, which is linked
// into it: what a save asks of the disk is written down, and the disk may be slow.
namespace {

struct Disk {
    std::vector<std::string> calls; ///< "rename TO", "remove NAME" or "flush", which is of a folder or a file
    std::chrono::milliseconds flushTime{0};
};

Disk* disk = nullptr; // none: the disk is not watched

std::string nameOf(int descriptor) {
    std::string path(4'096, '\0');
    const auto length = ::readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), path.data(), path.size());
    path.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return path.substr(path.rfind('/') + 1);
}

} // namespace

extern "C" int fsync(int descriptor) {
    if (disk != nullptr) {
        const auto name = nameOf(descriptor);
        disk->calls.push_back(name.ends_with(".clip") ? "flush a file" : "flush " + name);
        std::this_thread::sleep_for(disk->flushTime);
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

extern "C" int renameat(int oldFolder, const char* oldName, int newFolder, const char* newName) noexcept {
    if (disk != nullptr) {
        disk->calls.push_back(std::string("rename ") + newName);
    }
    return static_cast<int>(::syscall(SYS_renameat2, oldFolder, oldName, newFolder, newName, 0));
}

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
    if (disk != nullptr) {
        disk->calls.push_back(std::string("remove ") + name);
    }
    return static_cast<int>(::syscall(SYS_unlinkat, folder, name, flags));
}

namespace quillane::core {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::textEntry;

class VaultCallsTest : public testing::VaultTest {
protected:
    /// What a save of these asks of the disk.
    std::vector<std::string> callsOf(ClipboardVault& open, const std::vector<ClipboardEntry>& entries) {
        watched_ = {};
        disk = &watched_;
        const bool isSaved = open.save(entries).has_value();
        disk = nullptr;
        EXPECT_TRUE(isSaved);
        return watched_.calls;
    }

    static std::string file(const ClipboardEntry& entry) { return entry.id.toString() + ".clip"; }

    Disk watched_;
    const std::string flushFolder_ = "flush ClipboardHistory";
};

TEST_F(VaultCallsTest, NamesReachTheDiskBeforeTheIndexAndTheIndexBeforeOldFilesAreRemoved) {
    const auto old = textEntry("old", 1);
    const auto added = textEntry("new", 2);
    saved({old});
    auto open = vault();
    ASSERT_TRUE(open.load());
    EXPECT_THAT(callsOf(open, {added}),
                ElementsAre("flush a file", "rename " + file(added), flushFolder_, "flush a file", "rename index",
                            flushFolder_, "remove " + file(old), flushFolder_));
}

TEST_F(VaultCallsTest, WhatIsOverwrittenTakesItsNamesOnceTheirIndexIsOnTheDiskAndBeforeThatTakesItsOwn) {
    const auto old = textEntry("old", 1);
    auto first = textEntry("first", 2);
    auto second = textEntry("second", 3);
    saved({old, first, second});
    auto open = vault();
    ASSERT_TRUE(open.load());
    first.copiedAt = second.copiedAt = Date{4};
    EXPECT_THAT(callsOf(open, {first, second}),
                ElementsAre("flush a file", "rename pending-" + file(first), "flush a file",
                            "rename pending-" + file(second), flushFolder_, "flush a file", "rename pending-index.clip",
                            flushFolder_, "rename " + file(first), "rename " + file(second), flushFolder_,
                            "rename index", flushFolder_, "remove " + file(old), flushFolder_));
}

TEST_F(VaultCallsTest, WhereNothingDiffersNothingIsAskedOfTheDisk) {
    const auto entry = textEntry("text", 1);
    saved({entry});
    auto open = vault();
    ASSERT_TRUE(open.load());
    EXPECT_THAT(callsOf(open, {entry}), IsEmpty());
}

TEST_F(VaultCallsTest, CopyAfterAStartWithAThousandEntriesIsOnASlowDiskInTime) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 1'000; ++i) {
        entries.push_back(textEntry(std::to_string(i), i));
    }
    saved(entries);
    auto open = vault();
    ASSERT_TRUE(open.load());
    entries.erase(entries.begin()); // the limit
    entries.push_back(textEntry("new", 1'000));
    watched_.flushTime = 5ms;
    disk = &watched_;
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(open.save(entries));
    const auto took = std::chrono::steady_clock::now() - begin;
    disk = nullptr;
    EXPECT_EQ(std::ranges::count_if(watched_.calls, [](const auto& call) { return call.starts_with("flush"); }), 5);
    EXPECT_LT(took, 250ms); // with the quarter of a second that a save waits, half a second
    RecordProperty("milliseconds", std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()));
}

} // namespace
} // namespace quillane::core

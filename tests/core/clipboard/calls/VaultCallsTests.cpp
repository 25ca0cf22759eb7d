// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"
#include "core/clipboard/calls/WatchedDisk.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

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
        const testing::DiskWatch watch(watched_);
        EXPECT_TRUE(open.save(entries));
        return watched_.calls;
    }

    static std::string file(const ClipboardEntry& entry) { return entry.id.toString() + ".clip"; }

    testing::Disk watched_;
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
    const testing::DiskWatch watch(watched_);
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(open.save(entries));
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(std::ranges::count_if(watched_.calls, [](const auto& call) { return call.starts_with("flush"); }), 5);
    EXPECT_LT(took, 250ms); // with the quarter of a second that a save waits, half a second
    RecordProperty("milliseconds", std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()));
}

} // namespace
} // namespace quillane::core

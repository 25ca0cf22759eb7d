// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/calls/VaultSaves.hpp"

#include <cerrno>
#include <string>

namespace quillane::core {
namespace {

using testing::Disk;
using testing::DiskFault;
using testing::DiskWatch;
using testing::namesOf;
using testing::VaultSave;
using Duration = DiskFault::Duration;

class VaultDiskFaultTest : public testing::VaultTest, public ::testing::WithParamInterface<VaultSave> {
protected:
    /// What became of a save on a disk with this fault.
    struct Outcome {
        bool isSaved = false;
        VaultError error;
        std::string failed; ///< the call that failed; empty when none did
        int calls = 0;      ///< that the save made
    };

    /// Saves on a disk with this fault, and expects that the history before or after is there whatever the save said,
    /// and that the next save on a disk that works puts everything right.
    Outcome saveWith(const DiskFault& fault) const {
        const auto& save = GetParam();
        std::filesystem::remove_all(folder_);
        saved(save.before);
        auto open = vault();
        EXPECT_EQ(open.load(), save.before);
        Disk disk;
        disk.fault = fault;
        disk.room = save.room;
        const auto saving = [&] {
            const DiskWatch watch(disk);
            return open.save(save.after);
        };
        const auto result = saving();
        const auto found = vault().load();
        EXPECT_TRUE(found && isBetween(*found, save, save.room.has_value() || fault.error == ENOSPC));
        if (result) {
            EXPECT_EQ(found, save.after);
        }
        EXPECT_TRUE(open.save(save.after));
        EXPECT_EQ(vault().load(), save.after);
        EXPECT_EQ(fileNames(), namesOf(save.after));
        return {result.has_value(), result ? VaultError{} : result.error(), disk.failed, disk.count};
    }

    /// Does so at each call in turn. `check` gets each outcome.
    template <typename Check>
    void atEachCall(int error, Duration duration, const Check& check) const {
        int failures = 0;
        for (int at = 0, calls = 1; at < calls && !HasFailure(); ++at) {
            SCOPED_TRACE("error " + std::to_string(error) + " at call " + std::to_string(at));
            const auto outcome = saveWith({at, error, duration});
            check(outcome);
            failures += outcome.failed.empty() ? 0 : 1;
            calls = std::max(calls, outcome.calls);
        }
        EXPECT_GT(failures, 0) << "no call was reached";
    }
};

INSTANTIATE_TEST_SUITE_P(In, VaultDiskFaultTest, ::testing::ValuesIn(testing::vaultSaves()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_P(VaultDiskFaultTest, ErrorAtAnyCallFailsTheSaveOrCostsItNothing) {
    for (const int error : {EIO, EROFS, ENOSPC}) {
        for (const auto duration : {Duration::once, Duration::always}) {
            atEachCall(error, duration, [&](const Outcome& outcome) {
                // With a full disk the save is tried in another way, which may work or fail for want of room.
                if (!outcome.isSaved && error != ENOSPC) {
                    EXPECT_EQ(outcome.error.systemError, error) << outcome.failed;
                }
                if (outcome.isSaved && error != ENOSPC && duration == Duration::once && !outcome.failed.empty()) {
                    EXPECT_EQ(outcome.failed,
                              "statvfs"); // a disk that does not say how much room it has gets the benefit
                }
            });
        }
    }
}

TEST_P(VaultDiskFaultTest, InterruptedCallIsMadeAgain) {
    atEachCall(EINTR, Duration::once, [](const Outcome& outcome) { EXPECT_TRUE(outcome.isSaved) << outcome.failed; });
}

TEST_P(VaultDiskFaultTest, ShortWritesAreContinued) {
    atEachCall(DiskFault::shortWrite, Duration::once,
               [](const Outcome& outcome) { EXPECT_TRUE(outcome.isSaved) << outcome.failed; });
    EXPECT_TRUE(saveWith({0, DiskFault::shortWrite, Duration::always}).isSaved);
}

} // namespace
} // namespace quillane::core

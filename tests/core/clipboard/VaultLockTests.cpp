// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultLock.hpp"

#include "core/clipboard/VaultFaultTest.hpp"

#include <csignal>
#include <optional>

#include <sys/stat.h>

namespace quillane::core {
namespace {

using Reason = VaultError::Reason;

class VaultLockTest : public testing::VaultFaultTest {
protected:
    [[nodiscard]] std::optional<VaultLock> acquire() const {
        auto lock = VaultLock::acquire(folder_);
        return lock ? std::optional(std::move(*lock)) : std::nullopt;
    }
};

TEST_F(VaultLockTest, OneProgramHasItUntilItEnds) {
    auto first = acquire();
    ASSERT_TRUE(first);
    EXPECT_EQ(testing::inChild([&]() -> std::string {
                  const auto second = VaultLock::acquire(folder_);
                  return second || second.error().reason != Reason::inUse ? "the lock is given twice" : "";
              }),
              0);
    first.reset();
    EXPECT_TRUE(acquire());
}

TEST_F(VaultLockTest, EndsWithAProgramThatIsKilled) {
    EXPECT_EQ(testing::inChild([&]() -> std::string {
                  static_cast<void>(acquire().value());
                  std::raise(SIGKILL);
                  return "not killed";
              }),
              128 + SIGKILL);
    EXPECT_TRUE(acquire());
}

TEST_F(VaultLockTest, IsAPrivateFileThatIsNoFileOfTheHistory) {
    const auto lock = acquire();

    struct stat status {};

    ASSERT_EQ(stat((folder_ / "lock").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    saved(testing::manyEntries(1, 100, 1));
    EXPECT_TRUE(lock->holds(folder_));
    ASSERT_TRUE(ClipboardVault::eraseFiles(folder_));
    EXPECT_TRUE(lock->holds(folder_));
    EXPECT_FALSE(ClipboardVault::hasFiles(folder_).value());
}

TEST_F(VaultLockTest, HoldsNoMoreWhatWasRemovedOrReplaced) {
    const auto lock = acquire();
    std::filesystem::rename(folder_, root_ / "elsewhere");
    EXPECT_FALSE(lock->holds(folder_));
    const auto next = acquire();
    ASSERT_TRUE(next);
    EXPECT_TRUE(next->holds(folder_));
    EXPECT_FALSE(lock->holds(folder_));
}

TEST_F(VaultLockTest, NobodyIsKeptOutWhereThereCanBeNoFile) {
    std::filesystem::create_directories(folder_ / "lock");
    EXPECT_TRUE(acquire());
    EXPECT_TRUE(acquire());
}

} // namespace
} // namespace quillane::core

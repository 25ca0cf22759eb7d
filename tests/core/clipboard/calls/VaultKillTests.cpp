// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/calls/KilledProcess.hpp"
#include "core/clipboard/calls/VaultSaves.hpp"

#include <functional>
#include <stdexcept>

namespace quillane::core {
namespace {

using testing::DiskWatch;
using testing::killAtStop;
using testing::KillResult;
using testing::namesOf;
using testing::VaultSave;

class VaultCutTest : public testing::VaultTest {
protected:
    static void mustBe(bool condition) {
        if (!condition) {
            throw std::runtime_error("the vault does not work");
        }
    }
};

class VaultKillTest : public VaultCutTest, public ::testing::WithParamInterface<VaultSave> {
protected:
    void begin() const {
        std::filesystem::remove_all(folder_);
        saved(GetParam().before);
    }

    /// Prepares a save of the history.
    [[nodiscard]] std::function<std::function<void()>()> saving() const {
        return [this]() -> std::function<void()> {
            const auto open = std::make_shared<ClipboardVault>(vault()); // shared with the steps
            mustBe(open->load() == GetParam().before);
            return [open] {
                testing::Disk disk;
                disk.room = GetParam().room;
                const DiskWatch watch(disk);
                mustBe(open->save(GetParam().after).has_value());
            };
        };
    }

    /// Expects that what a killed process has left is the history before or after, and that the next save tidies up.
    void expectWhole(int stop) const {
        auto open = vault();
        const auto found = open.load();
        ASSERT_TRUE(found) << "stop " << stop << ", reason " << static_cast<int>(found.error().reason);
        ASSERT_TRUE(isBetween(*found, GetParam(), GetParam().room.has_value()))
            << "stop " << stop << ": " << found->size() << " entries";
        ASSERT_TRUE(open.save(GetParam().after)) << "stop " << stop;
        ASSERT_EQ(vault().load(), GetParam().after) << "stop " << stop;
        ASSERT_EQ(fileNames(), namesOf(GetParam().after)) << "stop " << stop;
    }
};

INSTANTIATE_TEST_SUITE_P(Of, VaultKillTest, ::testing::ValuesIn(testing::vaultSaves()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_P(VaultKillTest, BeforeOrAfterAnySystemCallLeavesTheHistoryBeforeOrAfterTheSave) {
    int stop = 0;
    for (auto result = KillResult::killed; result == KillResult::killed; ++stop) {
        begin();
        result = killAtStop(stop, saving());
        if (result == KillResult::notPermitted) {
            GTEST_SKIP() << "tracing a child process is not permitted here";
        }
        ASSERT_NE(result, KillResult::failed) << "stop " << stop;
        expectWhole(stop);
        if (HasFatalFailure()) {
            return;
        }
    }
    EXPECT_GT(stop, 20); // otherwise the system calls were not seen
    RecordProperty("stops", stop);
}

/// Of the one kind of save that another process may have to finish, each end that it can come to.
TEST_F(VaultCutTest, WhileACutSaveIsFinishedLeavesNothingInBetween) {
    const auto& saves = testing::vaultSaves();
    const auto several = std::ranges::find(saves, std::string_view("SeveralAtOnce"), &VaultSave::name);
    ASSERT_NE(several, saves.end());
    const auto next = [&] {
        auto entries = several->after;
        entries.push_back(testing::textEntry("next", 9));
        return entries;
    }();
    const auto preparing = [this](const std::vector<ClipboardEntry>& entries) {
        return [this, &entries]() -> std::function<void()> {
            const auto open = std::make_shared<ClipboardVault>(vault()); // shared with the steps
            mustBe(open->load().has_value());
            return [open, &entries] { mustBe(open->save(entries).has_value()); };
        };
    };
    int cuts = 0;
    for (int first = 0;; ++first) {
        std::filesystem::remove_all(folder_);
        saved(several->before);
        const auto result = killAtStop(first, preparing(several->after));
        if (result == KillResult::notPermitted) {
            GTEST_SKIP() << "tracing a child process is not permitted here";
        }
        if (result != KillResult::killed) {
            break;
        }
        if (!fileNames().contains("pending-index.clip") || first % 2 == 1) {
            continue; // a stop behind a call finds what the one before the next call does
        }
        const auto copy = root_ / "cut";
        std::filesystem::remove_all(copy);
        std::filesystem::copy(folder_, copy);
        for (int stop = 0;; stop += 2) {
            std::filesystem::remove_all(folder_);
            std::filesystem::copy(copy, folder_);
            const bool isKilled = killAtStop(stop, preparing(next)) == KillResult::killed;
            const auto found = vault().load();
            ASSERT_TRUE(found) << first << ' ' << stop;
            ASSERT_TRUE(*found == several->after || *found == next) << first << ' ' << stop;
            if (!isKilled) {
                break;
            }
            ++cuts;
        }
    }
    EXPECT_GT(cuts, 50);
}

/// Erasing is not undone by halves: what is left has everything or nothing.
TEST_F(VaultCutTest, WhileItIsErasedLeavesEverythingOrNothing) {
    const std::vector entries{testing::textEntry("a", 1), testing::textEntry("b", 2)};
    int stop = 0;
    for (auto result = KillResult::killed; result == KillResult::killed; ++stop) {
        std::filesystem::remove_all(folder_);
        saved(entries);
        result = killAtStop(stop, [this]() -> std::function<void()> {
            const auto open = std::make_shared<ClipboardVault>(vault()); // shared with the steps
            return [open] { mustBe(open->erase().has_value()); };
        });
        if (result == KillResult::notPermitted) {
            GTEST_SKIP() << "tracing a child process is not permitted here";
        }
        const auto found = vault().load();
        ASSERT_TRUE(found) << stop;
        ASSERT_TRUE(found->empty() || *found == entries) << stop;
        auto open = vault();
        ASSERT_TRUE(open.erase()) << stop;
        ASSERT_TRUE(fileNames().empty()) << stop;
    }
    EXPECT_GT(stop, 10);
}

} // namespace
} // namespace quillane::core

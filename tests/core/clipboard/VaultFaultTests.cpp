// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultFaultTest.hpp"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::core {
namespace {

using testing::inChild;
using testing::manyEntries;
using testing::testKey;
using testing::VaultFaultTest;
using Reason = VaultError::Reason;

TEST_F(VaultFaultTest, AWriteThatIsCutShortFailsTheSaveAndKeepsTheHistoryBefore) {
    EXPECT_EQ(inChild([&]() -> std::string {
                  auto open = vault();
                  const auto before = manyEntries(3, 10'000, 1);
                  if (!open.save(before)) {
                      return "the first save failed";
                  }
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{20'000, 20'000};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  auto after = before;
                  after[0].copiedAt = Date{2};
                  const auto large = manyEntries(1, 50'000, 2);
                  after.insert(after.begin(), large.begin(), large.end());
                  return checkFailedSave(open, before, after, EFBIG);
              }),
              0);
}

TEST_F(VaultFaultTest, AFileInPlaceOfTheFolderIsAnError) {
    std::filesystem::create_directories(folder_.parent_path());
    write(folder_, "a file");
    auto opened = ClipboardVault::open(folder_, testKey());
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().reason, Reason::folder);
    EXPECT_EQ(contents(folder_), "a file");
    folder_ /= "below";
    opened = ClipboardVault::open(folder_, testKey());
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().reason, Reason::folder);
}

TEST_F(VaultFaultTest, AFailedSaveLeavesNoneOfItsFiles) {
    const auto before = manyEntries(2, 100, 1);
    saved(before);
    const auto files = fileNames();
    auto after = before;
    after[0].copiedAt = after[1].copiedAt = Date{2};
    for (const auto& entry : manyEntries(2, 100, 2)) {
        after.push_back(entry);
    }
    for (const std::size_t tooLarge : {3U, 1U}) { // the last that is new, and the last that was there before
        auto large = after;
        large[tooLarge].items = ClipboardItems{{{"public.png", std::vector<std::byte>(50'000)}}};
        EXPECT_EQ(inChild([&]() -> std::string {
                      auto open = vault();
                      if (open.load() != before) {
                          return "the history cannot be loaded";
                      }
                      std::signal(SIGXFSZ, SIG_IGN);
                      const rlimit limit{20'000, 20'000};
                      setrlimit(RLIMIT_FSIZE, &limit);
                      auto problem = checkFailedSave(open, before, large, EFBIG);
                      if (problem.empty() && fileNames() != files) {
                          problem = "files of the save are left";
                      }
                      if (problem.empty() && (!open.save(after) || open.load() != after)) {
                          problem = "the next save failed";
                      }
                      return problem;
                  }),
                  0)
            << tooLarge;
        saved(before);
    }
}

TEST_F(VaultFaultTest, AFolderThatHasGoneFailsTheSaveUntilItIsOpenedAgain) {
    auto open = vault();
    EXPECT_TRUE(open.isInPlace());
    std::filesystem::remove_all(folder_);
    EXPECT_FALSE(open.isInPlace());
    const auto entries = manyEntries(1, 100, 1);
    EXPECT_FALSE(open.save(entries));
    ASSERT_TRUE(open.reopen());
    EXPECT_TRUE(open.isInPlace());
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

TEST_F(VaultFaultTest, AnIndexThatCannotBeReplacedFailsTheSaveEveryTime) {
    auto open = vault();
    std::filesystem::create_directories(folder_ / "index" / "inside");
    const auto entries = manyEntries(2, 100, 1);
    EXPECT_FALSE(open.save(entries));
    EXPECT_FALSE(open.save(entries));
    std::filesystem::remove_all(folder_ / "index");
    ASSERT_TRUE(open.save(entries));
    EXPECT_EQ(vault().load(), entries);
}

/// The history after a number of saves: every save inserts, removes, reorders and touches several entries at once.
std::vector<ClipboardEntry> historyAfter(int saves) {
    std::vector<ClipboardEntry> entries;
    for (int i = saves / 2; i < saves / 2 + 6 + saves % 3; ++i) {
        ClipboardEntry entry;
        entry.id.bytes[15] = static_cast<std::uint8_t>(i);
        entry.id.bytes[14] = static_cast<std::uint8_t>(i >> 8);
        entry.copiedAt = Date{static_cast<double>((saves + i) / 3)};
        entry.text = std::to_string((saves + i) / 3);
        entry.items = ClipboardItems{{{"public.png", std::vector<std::byte>(3'000, static_cast<std::byte>(i))}}};
        entries.push_back(std::move(entry));
    }
    if (saves % 4 == 0) {
        std::ranges::reverse(entries);
    }
    return entries;
}

/// Counts saves across processes.
class SharedCounter {
public:
    SharedCounter()
        : value_(static_cast<std::atomic<int>*>(
              mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {
        *value_ = 0;
    }

    SharedCounter(const SharedCounter&) = delete;
    SharedCounter& operator=(const SharedCounter&) = delete;

    ~SharedCounter() { munmap(value_, sizeof(std::atomic<int>)); }

    std::atomic<int>& operator*() const { return *value_; }

private:
    std::atomic<int>* value_;
};

TEST_F(VaultFaultTest, AKillAtAnyInstantLeavesTheHistoryBeforeOrAfterTheSave) {
    constexpr int kills = 500;
    const SharedCounter done;
    std::mt19937 random(20'240'229);
    saved(historyAfter(0));
    int killedWhileSaving = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const int first = *done;
        const pid_t child = fork();
        if (child == 0) {
            auto open = ClipboardVault::open(folder_, testKey());
            for (int i = first; open && open->save(historyAfter(i)); ++i) { // the first one may end a save cut short
                *done = i;
                if (!open->save(historyAfter(i + 1))) {
                    break;
                }
                *done = i + 1;
            }
            _exit(1);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 40'000));
        ::kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";
        const auto loaded = vault().load();
        ASSERT_TRUE(loaded) << kill << ": " << static_cast<int>(loaded.error().reason);
        const int saves = *done;
        if (*loaded == historyAfter(saves + 1)) {
            *done = saves + 1; // it had been saved before the count was raised
        } else {
            ASSERT_EQ(*loaded, historyAfter(saves)) << kill;
        }
        const auto names = fileNames();
        killedWhileSaving += std::ranges::any_of(names, [](const std::string& name) {
            return name.starts_with("temporary") || name.starts_with("pending");
        });
    }
    EXPECT_GT(killedWhileSaving, kills / 10); // otherwise the instants were not the relevant ones
    saved(historyAfter(*done));
    EXPECT_EQ(fileNames().size(), historyAfter(*done).size() + 1);
}

} // namespace
} // namespace quillane::core

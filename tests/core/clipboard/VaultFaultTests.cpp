// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <random>
#include <thread>

#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::core {
namespace {

using testing::testKey;
using testing::textEntry;
using Reason = VaultError::Reason;

constexpr int notPermitted = 77;

/// Runs the steps in a process of their own, which may limit or rearrange itself. They say what went wrong, or nothing.
int inChild(const std::function<std::string()>& steps) {
    const pid_t child = fork();
    if (child == 0) {
        const auto problem = steps();
        std::cerr << problem << (problem.empty() ? "" : "\n");
        _exit(problem.empty() ? 0 : problem == "not permitted" ? notPermitted : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<ClipboardEntry> manyEntries(int count, std::size_t bytes, double copiedAt) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < count; ++i) {
        entries.push_back(textEntry(std::to_string(i), copiedAt));
        entries.back().items = ClipboardItems{{{"public.png", std::vector<std::byte>(bytes)}}};
    }
    return entries;
}

class VaultFaultTest : public testing::VaultTest {
protected:
    /// Gives the calling process a view of the file systems of its own: directly as root, and for an ordinary user,
    /// where the system allows it, as the owner of a user namespace (user_namespaces(7)).
    static bool separateMounts() {
        const auto user = std::to_string(geteuid());
        const auto group = std::to_string(getegid());
        if (unshare(CLONE_NEWNS) == 0) {
            return true;
        }
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        // The user stays who it is, and a group may be mapped only where no others can be taken.
        return writeTo("/proc/self/setgroups", "deny") && writeTo("/proc/self/uid_map", user + ' ' + user + " 1") &&
               writeTo("/proc/self/gid_map", group + ' ' + group + " 1");
    }

    static bool writeTo(const char* file, const std::string& line) {
        std::ofstream stream(file);
        stream << line << std::flush;
        return stream.good();
    }

    /// A small file system of memory in place of the folder, that only the calling process sees.
    std::string mountSmallDisk() const {
        std::filesystem::create_directories(folder_);
        if (!separateMounts() || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("quillane", folder_.c_str(), "tmpfs", 0, "size=256k") != 0) {
            return "not permitted";
        }
        return {};
    }

    /// Everything that a failed save has to leave: an error, the history in memory, and what was saved before.
    static std::string checkFailedSave(ClipboardVault& open, const std::vector<ClipboardEntry>& before,
                                       const std::vector<ClipboardEntry>& after, int systemError) {
        const auto copy = after;
        const auto result = open.save(after);
        if (result) {
            return "saving did not fail";
        }
        if (result.error().reason != Reason::write || result.error().systemError != systemError) {
            return "another error: " + std::to_string(result.error().systemError);
        }
        if (after != copy) {
            return "the history in memory has changed";
        }
        if (open.load() != before) {
            return "the history on disk has changed";
        }
        return {};
    }
};

TEST_F(VaultFaultTest, AFullDiskFailsTheSaveAndKeepsTheHistoryBefore) {
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
        // A shorter history makes room, since it removes what the failed save has left.
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

TEST_F(VaultFaultTest, AReadOnlyFolderFailsTheSaveAndStillLoads) {
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

TEST_F(VaultFaultTest, ATemporaryThatCannotBeWrittenFailsTheSave) {
    auto open = vault();
    const auto before = manyEntries(2, 100, 1);
    ASSERT_TRUE(open.save(before));
    std::filesystem::create_directories(folder_ / "temporary.clip" / "inside");
    auto after = before;
    after[0].copiedAt = Date{2};
    EXPECT_EQ(checkFailedSave(open, before, after, EEXIST), "");
    std::filesystem::remove_all(folder_ / "temporary.clip");
    ASSERT_TRUE(open.save(after));
    EXPECT_EQ(vault().load(), after);
}

TEST_F(VaultFaultTest, AFolderThatHasGoneFailsTheSaveUntilTheVaultIsOpenedAgain) {
    auto open = vault();
    std::filesystem::remove_all(folder_);
    EXPECT_FALSE(open.save(manyEntries(1, 100, 1)));
    saved(manyEntries(1, 100, 1));
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
            *done = saves + 1; // it had been saved when the count was still to be raised
        } else {
            ASSERT_EQ(*loaded, historyAfter(saves)) << kill;
        }
        const auto names = fileNames();
        killedWhileSaving += std::ranges::any_of(names, [](const std::string& name) {
            return name.starts_with("temporary") || name.starts_with("pending");
        });
    }
    EXPECT_GT(killedWhileSaving, kills / 10); // else the instants were not those that matter
    saved(historyAfter(*done));
    EXPECT_EQ(fileNames().size(), historyAfter(*done).size() + 1);
}

} // namespace
} // namespace quillane::core

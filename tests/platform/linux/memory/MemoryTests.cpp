// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardVault.hpp"
#include "platform/ProcessProtection.hpp"
#include "support/Files.hpp"
#include "support/ProcessMemory.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane {
namespace {

using core::ClipboardEntry;
using core::ClipboardVault;
using core::SecretBytes;

/// Runs the work in a child process, as another program would, and ends it with the test.
class WorkingChild {
public:
    explicit WorkingChild(const std::function<void()>& work) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            work();
            [[maybe_unused]] const auto written = ::write(ends[1], "", 1);
            for (;;) {
                ::pause();
            }
        }
        ::close(ends[1]);
        char done = 0;
        hasWorked_ = ::read(ends[0], &done, 1) == 1;
        ::close(ends[0]);
    }

    WorkingChild(const WorkingChild&) = delete;
    WorkingChild& operator=(const WorkingChild&) = delete;

    ~WorkingChild() {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }

    /// Where it holds the bytes now.
    [[nodiscard]] std::vector<live::MemoryMatch> holds(std::span<const std::byte> bytes) const {
        EXPECT_TRUE(hasWorked_);
        const auto found = live::findInMemory(pid_, bytes);
        EXPECT_TRUE(found) << "its memory cannot be read";
        return found.value_or(std::vector<live::MemoryMatch>());
    }

    [[nodiscard]] pid_t pid() const { return pid_; }

private:
    pid_t pid_ = -1;
    bool hasWorked_ = false;
};

/// Numbers that the compiler cannot compute beforehand, so that they stand in no file (MMIX, Knuth).
class Numbers {
public:
    std::uint64_t next() {
        state_ = state_ * 6'364'136'223'846'793'005U + 1'442'695'040'888'963'407U;
        return state_ >> 33U;
    }

private:
    volatile std::uint64_t state_ = 1;
};

std::vector<std::byte> keyBytes() {
    Numbers numbers;
    std::vector<std::byte> bytes(32);
    for (auto& byte : bytes) {
        byte = static_cast<std::byte>(numbers.next() & 0xFFU);
    }
    return bytes;
}

/// A text of this length, no part of which occurs twice.
std::string text(std::size_t length) {
    std::string made(length, ' ');
    Numbers numbers;
    for (auto& character : made) {
        character = static_cast<char>('a' + numbers.next() % 26);
    }
    return made;
}

/// The beginning of the text, in the two encodings that it may be held in.
std::vector<live::MemoryMatch> textIn(const WorkingChild& child) {
    const auto part = text(64);
    auto found = child.holds(std::as_bytes(std::span(part)));
    std::u16string wide(part.begin(), part.end());
    const auto asUtf16 = child.holds(std::as_bytes(std::span(wide)));
    found.insert(found.end(), asUtf16.begin(), asUtf16.end());
    return found;
}

ClipboardVault vaultIn(const std::filesystem::path& folder) {
    return std::move(*ClipboardVault::open(folder, SecretBytes(keyBytes())));
}

std::vector<ClipboardEntry> entriesOf(const std::string& content) {
    const auto bytes = std::as_bytes(std::span(content));
    return {ClipboardEntry::make(core::ClipboardKind::text, content, "com.example.notes", "Notes",
                                 {{{"public.utf8-plain-text", std::vector<std::byte>(bytes.begin(), bytes.end())}}},
                                 core::Date{100})};
}

TEST(WipedHeap, NothingIsLeftOfWhatWasFreed) {
    for (const std::size_t size : {64U, 1'000U, 5'000U, 300'000U}) {
        const WorkingChild child([&] {
            auto once = text(size);
            const std::string twice = once;
            auto* raw = static_cast<char*>(std::malloc(size));
            std::memcpy(raw, twice.data(), size);
            auto* grown = static_cast<char*>(std::realloc(raw, size * 3));
            std::free(std::realloc(grown, size / 2));
        });
        const auto found = textIn(child);
        EXPECT_TRUE(found.empty()) << size << '\n' << describe(found);
    }
}

TEST(WipedHeap, WhatIsStillInUseStaysAsItIs) {
    const WorkingChild child([] { [[maybe_unused]] static auto* const kept = new std::string(text(1'000)); });
    EXPECT_EQ(textIn(child).size(), 1U);
    auto* block = static_cast<char*>(std::malloc(100));
    std::memset(block, 'x', 100);
    for (const std::size_t size : {200U, 100'000U, 500'000U, 150U, 100U}) {
        block = static_cast<char*>(std::realloc(block, size));
        EXPECT_EQ(std::count(block, block + 100, 'x'), 100) << size;
    }
    std::free(block);
}

TEST(SecretMemory, KeyOfAnOpenVaultIsInLockedMemoryOutsideOfDumpsOnly) {
    const auto folder = live::TemporaryFolder::create("quillane-memory");
    const WorkingChild child([&] {
        static auto vault = vaultIn(folder->path() / "vault");
        static_cast<void>(vault.save(entriesOf(text(2'000))));
        static_cast<void>(vault.load());
    });
    const auto found = child.holds(keyBytes());
    EXPECT_EQ(found.size(), 1U) << describe(found);
    EXPECT_TRUE(std::ranges::all_of(found, &live::MemoryMatch::isLocked)) << describe(found);
    EXPECT_TRUE(std::ranges::none_of(found, &live::MemoryMatch::isDumped)) << describe(found);
}

TEST(SecretMemory, NothingIsLeftOfAKeyThatIsNoLongerNeeded) {
    const auto folder = live::TemporaryFolder::create("quillane-memory");
    const WorkingChild child([&] {
        auto vault = vaultIn(folder->path() / "vault");
        static_cast<void>(vault.save(entriesOf(text(2'000))));
        auto other = vaultIn(folder->path() / "other");
        other = std::move(vault);
    });
    const auto found = child.holds(keyBytes());
    EXPECT_TRUE(found.empty()) << describe(found);
}

TEST(SecretMemory, NothingIsLeftOfAnEntryThatWasSavedLoadedAndForgotten) {
    const auto folder = live::TemporaryFolder::create("quillane-memory");
    const WorkingChild child([&] {
        for (const std::size_t length : {100U, 3'000U, 90'000U}) {
            auto vault = vaultIn(folder->path() / "vault");
            static_cast<void>(vault.save(entriesOf(text(length))));
            static_cast<void>(vault.save(entriesOf(text(length) + "שלום"))); // held in UTF-16 meanwhile
            static_cast<void>(vault.load());
        }
    });
    const auto found = textIn(child);
    EXPECT_TRUE(found.empty()) << describe(found);
}

TEST(ProcessProtection, UserCannotReadTheMemoryOfAProtectedProcess) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may";
    }
    const WorkingChild open([] {});
    EXPECT_TRUE(live::findInMemory(open.pid(), keyBytes()));
    const WorkingChild closed([] { protectProcess(); });
    EXPECT_FALSE(live::findInMemory(closed.pid(), keyBytes()));
    EXPECT_NE(::ptrace(PTRACE_ATTACH, closed.pid(), nullptr, nullptr), 0) << "a debugger may attach";
}

} // namespace
} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/AtomicFile.hpp"

#include "core/propertylist/PropertyListSamples.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillane::core {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;

class AtomicFileTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string content(const fs::path& file) const {
        const auto bytes = readFile(file, 1 << 20);
        return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                     : "error: " + bytes.error().message();
    }

    [[nodiscard]] std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(files_.path()), fs::directory_iterator()));
    }

    [[nodiscard]] static mode_t mode(const fs::path& path) {
        struct stat status {};

        return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    live::TemporaryFolder files_;
    fs::path file_ = files_.path() / "settings";
};

TEST_F(AtomicFileTest, WritesANewFileWithItsMode) {
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("new"), 0600));
    EXPECT_EQ(content(file_), "new");
    EXPECT_EQ(mode(file_), 0600U);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AtomicFileTest, ReplacesAFileAndItsMode) {
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("a long old content"), 0644));
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("new"), 0600));
    EXPECT_EQ(content(file_), "new");
    EXPECT_EQ(mode(file_), 0600U);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AtomicFileTest, WhoHasTheOldFileOpenKeepsIt) {
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("old"), 0600));
    std::ifstream reader(file_);
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("new"), 0600));
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST_F(AtomicFileTest, ReplacesTheFileBehindASymbolicLink) {
    const auto elsewhere = files_.path() / "elsewhere";
    fs::create_directory(elsewhere);
    fs::create_symlink("elsewhere/real", file_);
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("one"), 0600)) << "a link that leads nowhere yet";
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("two"), 0600));
    EXPECT_TRUE(fs::is_symlink(file_));
    EXPECT_EQ(content(elsewhere / "real"), "two");
}

TEST_F(AtomicFileTest, AMissingFolderIsAnError) {
    EXPECT_EQ(writeFileAtomically(files_.path() / "none" / "file", bytesOf("a"), 0600).error().number, ENOENT);
}

TEST_F(AtomicFileTest, WhenTheFileCannotBeReplacedNothingIsLeftBehind) {
    fs::create_directories(file_ / "occupied");
    EXPECT_FALSE(writeFileAtomically(file_, bytesOf("a"), 0600));
    EXPECT_EQ(entries(), 1U);
}

TEST_F(AtomicFileTest, ReadsNoMoreThanTheLimit) {
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf("12345"), 0600));
    EXPECT_TRUE(readFile(file_, 5).has_value());
    EXPECT_EQ(readFile(file_, 4).error().number, EFBIG);
    EXPECT_EQ(readFile(file_, 0).error().number, EFBIG);
}

TEST_F(AtomicFileTest, ReadsAnEmptyFile) {
    ASSERT_TRUE(writeFileAtomically(file_, {}, 0600));
    EXPECT_EQ(readFile(file_, 0)->size(), 0U);
}

TEST_F(AtomicFileTest, ReadsAFileWithoutASize) {
    EXPECT_GT(readFile("/proc/self/status", 1 << 20)->size(), 100U);
}

TEST_F(AtomicFileTest, ReportsWhyAFileCannotBeRead) {
    EXPECT_EQ(readFile(file_, 10).error().number, ENOENT);
    EXPECT_EQ(readFile(files_.path(), 10).error().number, EINVAL);
    EXPECT_EQ(FileError{ENOENT}.message(), "No such file or directory");
}

TEST_F(AtomicFileTest, APipeIsRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    EXPECT_EQ(readFile(file_, 10).error().number, EINVAL);
}

TEST_F(AtomicFileTest, RemovesAbandonedTemporariesOfThisFileOnly) {
    static_cast<void>(files_.file(".settings.abc123.tmp"));
    for (const auto* kept : {"settings", ".settings.tmp", ".settings.abc123.tmp2", ".other.abc123.tmp"}) {
        static_cast<void>(files_.file(kept));
    }
    removeAbandonedTemporaries(file_);
    EXPECT_FALSE(fs::exists(files_.path() / ".settings.abc123.tmp"));
    EXPECT_EQ(entries(), 4U);
}

TEST_F(AtomicFileTest, RemovingTemporariesFromAMissingFolderDoesNothing) {
    removeAbandonedTemporaries(files_.path() / "none" / "file");
    EXPECT_EQ(entries(), 0U);
}

TEST_F(AtomicFileTest, CreatesMissingFoldersForTheUserAlone) {
    const auto folder = files_.path() / "a" / "b" / "c";
    ASSERT_TRUE(createPrivateFolder(folder));
    for (const auto& path : {folder, folder.parent_path(), folder.parent_path().parent_path()}) {
        EXPECT_EQ(mode(path), 0700U) << path;
    }
    EXPECT_TRUE(createPrivateFolder(folder)) << "it is there already";
}

TEST_F(AtomicFileTest, CreatesFoldersAndFilesWithTheirModesWhateverTheMask) {
    const auto folder = files_.path() / "a" / "b";
    const mode_t before = ::umask(0777);
    const auto created = createPrivateFolder(folder);
    const auto written = writeFileAtomically(folder / "file", bytesOf("new"), 0600);
    ::umask(before);
    EXPECT_TRUE(created);
    EXPECT_TRUE(written);
    EXPECT_EQ(mode(folder.parent_path()), 0700U);
    EXPECT_EQ(mode(folder), 0700U);
    EXPECT_EQ(mode(folder / "file"), 0600U);
}

TEST_F(AtomicFileTest, LeavesAnExistingFolderAsItIs) {
    ::chmod(files_.path().c_str(), 0755);
    ASSERT_TRUE(createPrivateFolder(files_.path()));
    EXPECT_EQ(mode(files_.path()), 0755U);
}

TEST_F(AtomicFileTest, AFileInTheWayOfAFolderIsAnError) {
    const auto file = files_.file("file");
    EXPECT_EQ(createPrivateFolder(file).error().number, EEXIST);
    EXPECT_EQ(createPrivateFolder(file / "a").error().number, EEXIST);
}

TEST_F(AtomicFileTest, AKillAtAnyInstantLeavesOneWholeContent) {
    constexpr std::size_t size = 200'000;
    ASSERT_TRUE(writeFileAtomically(file_, bytesOf(std::string(size, 'a')), 0600));
    for (int round = 0; round < 20; ++round) {
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
                static_cast<void>(writeFileAtomically(file_, bytesOf(std::string(size, letter)), 0600));
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(500 * round)); // the kill comes at a different instant
                                                                             // each time
        ::kill(writer, SIGKILL);
        ::waitpid(writer, nullptr, 0);
        const auto text = content(file_);
        ASSERT_EQ(text.size(), size);
        ASSERT_EQ(static_cast<std::size_t>(std::ranges::count(text, text.front())), size);
    }
    removeAbandonedTemporaries(file_);
    EXPECT_EQ(entries(), 1U);
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileIO.hpp"

#include "core/support/FileDescriptor.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace quillane::core {
namespace {

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
    }

    FileDescriptor reading;
    FileDescriptor writing;
};

TEST(FileIO, MovesMoreThanOneCallTakes) {
    Pipe pipe;
    const std::vector<std::byte> sent(300'000, std::byte{7}); // several times what a pipe holds
    std::thread writer([&] {
        EXPECT_TRUE(writeAll(pipe.writing.get(), sent));
        pipe.writing = FileDescriptor();
    });
    std::vector<std::byte> received(sent.size());
    EXPECT_EQ(readAll(pipe.reading.get(), received), sent.size());
    writer.join();
    EXPECT_EQ(received, sent);
}

TEST(FileIO, ReadsLessOnlyAtTheEnd) {
    const live::TemporaryFolder files;
    const FileDescriptor file(::open(files.file("five", "12345").c_str(), O_RDONLY | O_CLOEXEC));
    std::array<std::byte, 3> buffer{};
    EXPECT_EQ(readAll(file.get(), buffer), 3U);
    EXPECT_EQ(readAll(file.get(), buffer), 2U);
    EXPECT_EQ(readAll(file.get(), buffer), 0U);
}

TEST(FileIO, FailuresLeaveTheirReason) {
    std::array<std::byte, 1> buffer{};
    EXPECT_FALSE(readAll(-1, buffer));
    EXPECT_EQ(errno, EBADF);
    EXPECT_FALSE(writeAll(-1, buffer));
    EXPECT_EQ(errno, EBADF);
    EXPECT_FALSE(flushFolderToDisk("/nonexistent"));
    EXPECT_EQ(errno, ENOENT);
}

TEST(FileIO, FlushesAFolder) {
    const live::TemporaryFolder files;
    EXPECT_TRUE(flushFolderToDisk(files.path()));
}

} // namespace
} // namespace quillane::core

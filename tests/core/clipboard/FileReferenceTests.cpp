// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/FileReference.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(FileReference, FindsTheFileOfAFileUrl) {
    for (const auto* url : {"file:///tmp/a%20b", "file://localhost/tmp/a%20b", "FILE:/tmp/a%20b"}) {
        EXPECT_EQ(referencedFile(url), "/tmp/a b") << url;
    }
}

TEST(FileReference, NothingElseNamesAFile) {
    for (const auto* url : {"", "/tmp/a", "tmp", "file", "file:///%zz", "file:///%4", "file:///a%00b", ":",
                            "file:///a\n", "https://x.org/a", "file://elsewhere.example/a"}) {
        EXPECT_FALSE(referencedFile(url)) << url;
    }
}

TEST(FileReference, TakesCharactersOutsideAsciiAsTheyAre) {
    EXPECT_EQ(referencedFile("file:///tmp/\xD7\xA9"), "/tmp/\xD7\xA9");
    EXPECT_EQ(lastPathComponent("file:///tmp/\xD7\xA9"), "\xD7\xA9");
}

TEST(FileReference, TakesBracketsAndSpacesInPathsAsTheyAre) {
    EXPECT_EQ(referencedFile("file:///tmp/report%20[1].txt"), "/tmp/report [1].txt"); // as Qt writes it
    EXPECT_EQ(referencedFile("file:///tmp/a b.txt"), "/tmp/a b.txt");
    EXPECT_EQ(referencedFile("file:///tmp/{a}|\"b\"<c>\\^`%5B%5d"), "/tmp/{a}|\"b\"<c>\\^`[]");
    EXPECT_EQ(lastPathComponent("file:///tmp/report%20[1].txt"), "report [1].txt");
    EXPECT_EQ(lastPathComponent("file:///tmp/a b.txt"), "a b.txt");
    EXPECT_EQ(lastPathComponent("file:/[a]/[b]"), "[b]");
    EXPECT_EQ(lastPathComponent("https://[::1]:8080/[a]"), "[a]");
    EXPECT_EQ(lastPathComponent("https://[::1"), std::nullopt);
}

TEST(FileReference, NamesTheLastComponent) {
    EXPECT_EQ(lastPathComponent("file:///a/b"), "b");
    EXPECT_EQ(lastPathComponent("file:///a/b%20c//"), "b c");
    EXPECT_EQ(lastPathComponent("file:///"), "/");
    EXPECT_EQ(lastPathComponent("https://x.org"), "");
    EXPECT_EQ(lastPathComponent("https://x.org/d?q=/e#/f"), "d");
    EXPECT_EQ(lastPathComponent("no url"), std::nullopt);
}

TEST(FileReference, KnowsReferencesByIdentifier) {
    EXPECT_TRUE(isFileReference("file:///.file/id=6571367.2773272"));
    EXPECT_TRUE(isFileReference("file://localhost/.file/id=6571367.2773272"));
    for (const auto* url : {"file:///a/.file/id=1.2", "file:///.file/name", "file://server/.file/id=1.2",
                            "/.file/id=1.2", "https://example.org/.file/id=1.2", ""}) {
        EXPECT_FALSE(isFileReference(url)) << url;
    }
}

} // namespace
} // namespace quillane::core

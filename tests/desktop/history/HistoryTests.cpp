// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/history/LiveHistory.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

TEST_F(LiveHistoryTest, ACopyIsThereAfterTheAgentWasKilledHalfASecondLater) {
    startHistory();
    copy("kept");
    ASSERT_TRUE(hasEntries(1));
    EXPECT_TRUE(holdsFor(milliseconds{500}, [&] { return agent().process().isRunning(); }));
    agent().process().signal(SIGKILL);
    ASSERT_TRUE(agent().process().waitForExit(defaultTimeout));
    startHistory();
    EXPECT_TRUE(hasEntries(1));
    EXPECT_EQ(agent().status().at("clipboard").at("storageError"), false);
}

TEST_F(LiveHistoryTest, TwentyCopiesInARowAreAllRecorded) {
    startHistory();
    for (int count = 1; count <= 20; ++count) {
        copy("copy " + std::to_string(count)); // each as soon as the previous one has been read: its owner ends then
        ASSERT_TRUE(hasEntries(count));
    }
}

TEST_F(LiveHistoryTest, CopiesMadeWhilePausedAreNeverRecorded) {
    startHistory();
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    copy("paused");
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    copy("later");
    EXPECT_TRUE(hasEntries(1));
    EXPECT_TRUE(holdsFor(milliseconds{700}, [&] { return agent().status().at("clipboard").at("entries") == 1; }));
}

TEST_F(LiveHistoryTest, NothingReadableIsOnTheDisk) {
    startHistory();
    copy("a secret of mine that nobody reads");
    ASSERT_TRUE(hasEntries(1));
    const auto folder = desktop().home() / ".local" / "share" / "Quillane" / "ClipboardHistory";
    ASSERT_TRUE(waitUntil([&] {
        std::error_code error;
        const std::filesystem::directory_iterator files(folder, error);
        return !error && std::distance(begin(files), end(files)) == 3; // the index, the entry and the lock
    }));
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        EXPECT_EQ(readFile(file.path()).find("secret"), std::string::npos);
    }
}

} // namespace
} // namespace quillane::live

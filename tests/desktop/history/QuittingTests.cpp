// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/history/LiveHistory.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using namespace std::chrono_literals;

class LiveQuittingTest : public LiveHistoryTest {};

TEST_F(LiveQuittingTest, QuittingDoesNotWaitForAFileServerThatIsAway) {
    startHistory({{"LD_PRELOAD", QUILLANE_HANGING_FILES}});
    ASSERT_TRUE(writeFile(desktop().home() / "uris", "file:///away/report.odt\r\n"));
    const auto copying =
        required(desktop().startProcess({QUILLANE_COPY_STANDIN, "text/uri-list", desktop().home() / "uris"}));
    ASSERT_TRUE(hasEntries(1));
    openPanel();
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(desktop().home() / "asked"); }));
    copy("the last one"); // is on its way to the disk
    ASSERT_TRUE(hasEntries(2));
    agent().process().signal(SIGTERM);
    EXPECT_EQ(agent().process().waitForExit(3s), (ExitStatus{0, 0}));
    std::size_t files = 0;
    for (const auto& file :
         std::filesystem::directory_iterator(desktop().home() / ".local" / "share" / "Quillane" / "ClipboardHistory")) {
        files += file.path().extension() == ".clip" ? 1 : 0;
    }
    EXPECT_EQ(files, 2U);
}

} // namespace
} // namespace quillane::live

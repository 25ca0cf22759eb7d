// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/history/LiveHistory.hpp"

#include <map>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

class LiveSavedHistoryTest : public LiveHistoryTest {
protected:
    /// Records these copies, waits until they are on the disk and ends the agent.
    void saveHistory(const std::vector<std::string>& copies) {
        startHistory();
        int count = 0;
        for (const auto& text : copies) {
            copy(text);
            require(hasEntries(++count), "a copy is not recorded");
        }
        endAgent();
        require(entryFiles().size() == copies.size(), "the copies are not on the disk");
    }

    [[nodiscard]] bool says(const char* fact, const nlohmann::json& expected) {
        return agent().waitForStatus([&](const auto& status) { return status.at("clipboard").at(fact) == expected; });
    }

    /// When each file of the history was written.
    [[nodiscard]] std::map<std::string, std::filesystem::file_time_type> written() {
        std::map<std::string, std::filesystem::file_time_type> times;
        for (const auto& file : std::filesystem::directory_iterator(folder())) {
            times[file.path().filename()] = file.last_write_time();
        }
        return times;
    }

    void openHistorySettings() {
        require(desktop().run({agentExecutable()}).succeeded() && pressButton("History"), "no settings of the history");
    }
};

TEST_F(LiveSavedHistoryTest, DamagedOneIsSetAsideRecoveredAndErasedInTheSettings) {
    saveHistory({"first", "second", "third"});
    std::filesystem::resize_file(entryFiles().front(), 20);
    startHistory();
    ASSERT_TRUE(says("setAside", 1));
    EXPECT_TRUE(says("entries", 0));
    copy("fourth");
    ASSERT_TRUE(hasEntries(1));
    EXPECT_TRUE(waitUntil([&] { return entryFiles().size() == 1; }));
    EXPECT_TRUE(says("storageError", false));
    openHistorySettings();
    ASSERT_TRUE(pressButton("Recover…"));
    ASSERT_TRUE(pressButton("Recover"));
    EXPECT_TRUE(hasEntries(3));
    EXPECT_TRUE(waitUntil([&] { return entryFiles().size() == 3; }));
    EXPECT_TRUE(says("setAside", 1)); // with what cannot be read
    endAgent();
    startHistory();
    EXPECT_TRUE(hasEntries(3));
    openHistorySettings();
    ASSERT_TRUE(pressButton("Clear clipboard history…"));
    ASSERT_TRUE(pressButton("Delete"));
    EXPECT_TRUE(says("setAside", 0));
    EXPECT_TRUE(says("entries", 0));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder().parent_path()), {}), 1);
}

TEST_F(LiveSavedHistoryTest, OneThatIsOffOpensWithKeptEntriesAndIsTurnedOnThere) {
    saveHistory({"kept"});
    core::ClipboardOptions options;
    options.enabled = false;
    ASSERT_TRUE(writeHistorySettings(desktop(), options));
    startAgent();
    ASSERT_TRUE(says("status", "Clipboard history is off"));
    ASSERT_TRUE(hasEntries(1));
    open([&] { require(agent().command({"history"}).succeeded(), "the command fails"); });
    copy("not recorded");
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return agent().status().at("clipboard").at("entries") == 1; }));
    FocusWatcher focus(desktop().accessibility());
    desktop().keyboard().tap(Key::tab);
    ASSERT_TRUE(waitUntil([&] {
        const auto focused = focus.next(milliseconds{300});
        return focused && focused->name == "Turn on";
    }));
    desktop().keyboard().tap(Key::enter);
    EXPECT_TRUE(says("status", "Clipboard history is active"));
    EXPECT_TRUE(isPanelOpen(true));
    copy("recorded");
    EXPECT_TRUE(hasEntries(2));
    desktop().keyboard().tap(Key::escape);
    EXPECT_TRUE(isPanelOpen(false));
}

TEST_F(LiveSavedHistoryTest, DiskThatFailsIsNotWrittenToAndReadWhenItWorksAgain) {
    saveHistory({"first", "second"});
    const auto before = written();
    ASSERT_TRUE(writeFile(desktop().home() / "failing", ""));
    startHistory({{"LD_PRELOAD", QUILLANE_FAILING_FILES}});
    ASSERT_TRUE(says("unread", true));
    EXPECT_TRUE(says("storageError", true));
    copy("meanwhile");
    ASSERT_TRUE(hasEntries(1));
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return written() == before; }));
    std::filesystem::remove(desktop().home() / "failing");
    EXPECT_TRUE(hasEntries(3));
    EXPECT_TRUE(waitUntil([&] { return entryFiles().size() == 3; }));
    EXPECT_TRUE(says("unread", false));
    EXPECT_TRUE(says("storageError", false));
    EXPECT_TRUE(says("setAside", 0));
}

TEST_F(LiveSavedHistoryTest, ReadingThatFailsOnceIsTriedAgainAtOnce) {
    saveHistory({"first", "second"});
    ASSERT_TRUE(writeFile(desktop().home() / "stale", ""));
    startHistory({{"LD_PRELOAD", QUILLANE_FAILING_FILES}});
    EXPECT_TRUE(hasEntries(2));
    EXPECT_FALSE(std::filesystem::exists(desktop().home() / "stale"));
    EXPECT_TRUE(says("storageError", false));
}

TEST_F(LiveSavedHistoryTest, StartWritesNoneOfItsFiles) {
    saveHistory({"first", "second"});
    const auto before = written();
    startHistory();
    ASSERT_TRUE(hasEntries(2));
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return written() == before; }));
    endAgent();
    EXPECT_EQ(written(), before);
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/history/LiveHistory.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

/// Who may write the saved history, and what the end of a session leaves of it.
class LiveHistoryOwnershipTest : public LiveHistoryTest {
protected:
    /// Starts another X server of the same session, which may end without this desktop. Its display.
    std::string startServer() {
        server_ = required(desktop().startProcess(
            {"sh", "-c", "exec Xvfb -displayfd 3 -screen 0 640x480x24 -nolisten tcp -noreset 3>\"$HOME/display\""}));
        const auto number = [this] { return readFile(desktop().home() / "display"); };
        require(waitUntil([&] { return number().ends_with('\n'); }), "no second X server");
        return ":" + std::to_string(std::stoi(number()));
    }

    void copyOn(const std::string& display, const std::string& text) {
        const auto copying = desktop().run({"sh", "-c", "printf %s \"$0\" | xclip -selection clipboard -i", text},
                                           defaultTimeout, {{"DISPLAY", display}});
        ASSERT_TRUE(copying.succeeded()) << copying.errors;
    }

    /// What a second agent on this home says of its history.
    [[nodiscard]] nlohmann::json statusOf(const Environment& second) {
        const auto result = desktop().run({agentExecutable(), "status", "--json"}, defaultTimeout, second);
        return result.succeeded() ? nlohmann::json::parse(result.output, nullptr, false).at("clipboard")
                                  : nlohmann::json();
    }

    [[nodiscard]] bool says(const Environment& second, const char* fact, const nlohmann::json& expected) {
        return waitUntil([&] {
            const auto status = statusOf(second);
            return status.is_object() && status.at(fact) == expected;
        });
    }

    std::optional<ChildProcess> server_;
};

TEST_F(LiveHistoryOwnershipTest, LastCopyIsKeptWhenTheXServerGoesAway) {
    const auto display = startServer();
    startHistory({{"DISPLAY", display}});
    copyOn(display, "first");
    ASSERT_TRUE(hasEntries(1));
    ASSERT_TRUE(waitUntil([&] { return entryFiles().size() == 1; }));
    copyOn(display, "last");
    ASSERT_TRUE(hasEntries(2));
    server_->signal(SIGKILL); // before it has been saved
    ASSERT_TRUE(agent().process().waitForExit(defaultTimeout));
    EXPECT_EQ(entryFiles().size(), 2U);
    startHistory();
    EXPECT_TRUE(hasEntries(2));
}

TEST_F(LiveHistoryOwnershipTest, SecondAgentOnOneHomeKeepsItsHistoryInMemoryUntilTheFirstHasEnded) {
    startHistory();
    const Environment other{{"XDG_RUNTIME_DIR", desktop().home() / "second"}};
    std::filesystem::create_directory(other.at("XDG_RUNTIME_DIR"));
    std::filesystem::permissions(other.at("XDG_RUNTIME_DIR"), std::filesystem::perms::owner_all);
    const auto second = required(desktop().startProcess({agentExecutable()}, other));
    ASSERT_TRUE(says(other, "usedElsewhere", true));
    EXPECT_TRUE(says(other, "storageError", true));
    EXPECT_TRUE(agent().status().at("clipboard").at("usedElsewhere") == false);
    copy("text");
    ASSERT_TRUE(hasEntries(1));
    ASSERT_TRUE(says(other, "entries", 1));
    ASSERT_TRUE(waitUntil([&] { return entryFiles().size() == 1; }));
    EXPECT_TRUE(holdsFor(milliseconds{800}, [&] { return entryFiles().size() == 1; }));
    endAgent();
    EXPECT_TRUE(says(other, "usedElsewhere", false));
    EXPECT_TRUE(says(other, "storageError", false));
    EXPECT_TRUE(says(other, "entries", 1));
    EXPECT_EQ(entryFiles().size(), 1U);
}

} // namespace
} // namespace quillane::live

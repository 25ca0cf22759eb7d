// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"

#include <csignal>
#include <optional>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

/// All options at their defaults, and the history turned on: what the settings window stores.
constexpr const char* historyIsOn =
    "eyJlbmFibGVkIjp0cnVlLCJzYXZlVGV4dCI6dHJ1ZSwic2F2ZUltYWdlcyI6dHJ1ZSwic2F2ZUZpbGVzIjp0cnVlLCJwZXJzaXN0"
    "Ijp0cnVlLCJsaW1pdCI6MjAwLCJzdG9yYWdlTUIiOjI1MCwicG9wdXBBdEN1cnNvciI6dHJ1ZSwicGluc09uVG9wIjp0cnVlLCJp"
    "bWFnZUhlaWdodCI6NjAsInByZXZpZXdEZWxheSI6NzAwLCJzb3J0QnlMYXN0Q29weSI6dHJ1ZSwiaWdub3JlZEFwcHMiOltdfQ==";

/// The clipboard history of the agent, beside a keyring that is open and programs that copy.
class LiveHistory : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        require(writeAgentSettings(desktop(),
                                   {{"QuillaneClipboardOptionsV1", std::string("<data>") + historyIsOn + "</data>"}}),
                "the settings cannot be written");
        require(writeFile(desktop().home() / "password", "password"), "no password");
        keyring_ = required(desktop().startProcess(
            {"sh", "-c", "exec gnome-keyring-daemon --foreground --unlock --components=secrets <~/password"}));
        // Asked of the bus, which would start another one if the keyring itself were asked too early.
        require(waitUntil([&] {
                    return desktop()
                               .run({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
                                     "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
                                     "string:org.freedesktop.secrets"})
                               .output.find("true") != std::string::npos;
                }),
                "the keyring did not open");
    }

    void TearDown() override {
        AgentTest::TearDown();
        keyring_.reset();
    }

    /// Starts the agent and waits until its history is there.
    void startHistory() {
        startAgent();
        require(agent().waitForStatus([](const auto& status) {
            return status.at("clipboard").at("status") == "Clipboard history is active";
        }),
                "the history is not active");
    }

    void copy(const std::string& text) {
        const auto copying = desktop().run({"sh", "-c", "printf %s \"$0\" | xclip -selection clipboard -i", text});
        ASSERT_TRUE(copying.succeeded()) << copying.errors;
    }

    [[nodiscard]] bool hasEntries(int count) {
        return agent().waitForStatus([&](const auto& status) { return status.at("clipboard").at("entries") == count; });
    }

private:
    std::optional<ChildProcess> keyring_;
};

TEST_F(LiveHistory, ACopyIsThereAfterTheAgentWasKilledHalfASecondLater) {
    startHistory();
    copy("kept");
    ASSERT_TRUE(hasEntries(1));
    EXPECT_TRUE(holdsFor(milliseconds{500}, [&] { return agent().process().isRunning(); }));
    agent().process().signal(SIGKILL);
    ASSERT_TRUE(agent().process().waitForExit(patience));
    startHistory();
    EXPECT_TRUE(hasEntries(1));
    EXPECT_EQ(agent().status().at("clipboard").at("storageError"), false);
}

TEST_F(LiveHistory, TwentyCopiesInARowAreAllRecorded) {
    startHistory();
    const auto copying = desktop().run(
        {"sh", "-c", "for i in $(seq 20); do printf %s \"copy $i\" | xclip -selection clipboard -i; sleep 0.05; done"});
    ASSERT_TRUE(copying.succeeded()) << copying.errors;
    EXPECT_TRUE(hasEntries(20));
}

TEST_F(LiveHistory, WhatIsCopiedWhilePausedIsNeverRecorded) {
    startHistory();
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    copy("paused");
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    copy("later");
    EXPECT_TRUE(hasEntries(1));
    EXPECT_TRUE(holdsFor(milliseconds{700}, [&] { return agent().status().at("clipboard").at("entries") == 1; }));
}

TEST_F(LiveHistory, NothingReadableIsOnTheDisk) {
    startHistory();
    copy("a secret of mine that nobody reads");
    ASSERT_TRUE(hasEntries(1));
    const auto folder = desktop().home() / ".local" / "share" / "Quillane" / "ClipboardHistory";
    ASSERT_TRUE(waitUntil([&] {
        std::error_code error;
        const std::filesystem::directory_iterator files(folder, error);
        return !error && std::distance(begin(files), end(files)) == 2;
    }));
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        EXPECT_EQ(readFile(file.path()).find("secret"), std::string::npos);
    }
}

} // namespace
} // namespace quillane::live

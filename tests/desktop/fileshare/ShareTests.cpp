// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"
#include "servers/NginxServer.hpp"

#include <algorithm>

namespace quillane::live {
namespace {

constexpr std::string_view content = "the content that is shared";

/// Sharing with the agent as users do: their server, their file, their clipboard.
class LiveShareTest : public AgentTest {
protected:
    LiveShareTest() : server_(servers::NginxServer::start()) {}

    void SetUp() override {
        AgentTest::SetUp();
        require(server_.has_value(), server_ ? "" : server_.error());
        require(writeAgentSettings(desktop(), {{"FileShareServer", "<string>" + address() + "</string>"}}),
                "cannot write the settings");
        require(writeFile(file(), std::string(content)), "cannot write the file");
    }

    [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(server_->ports().http); }

    [[nodiscard]] std::filesystem::path file() { return desktop().home() / "קובץ #1.txt"; }

    [[nodiscard]] CommandResult share(std::vector<std::string> words, const Environment& more = {}) {
        words.insert(words.begin(), {agentExecutable(), "share"});
        return desktop().run(words, defaultTimeout, more);
    }

    /// Whether the agent shows this text, as an assistive technology reads it.
    [[nodiscard]] bool shows(pid_t pid, const std::string& text) {
        const auto root = desktop().accessibility().application(pid);
        return root && desktop().accessibility().find(*root, [&](const AccessibleNode& node) {
            return node.name == text && node.is(AccessibleNode::State::showing);
        });
    }

    [[nodiscard]] std::string clipboard() { return desktop().run({"xclip", "-selection", "clipboard", "-o"}).output; }

    /// The contents behind the link.
    [[nodiscard]] std::string fetch(const std::string& link) {
        return desktop().run({"curl", "--silent", "--fail", "--noproxy", "*", link}).output;
    }

    /// Presses Return in the finished window, and fetches what the link on the clipboard leads to.
    void expectCopiedLinkLeadsToTheFile(pid_t pid) {
        ASSERT_TRUE(waitUntil([&] { return shows(pid, "Your file is ready to share"); }));
        ASSERT_TRUE(desktop().waitUntilInFront(pid));
        desktop().keyboard().tap(Key::enter);
        std::string link;
        EXPECT_TRUE(waitUntil([&] { return (link = clipboard()).starts_with(address() + '/'); })) << link;
        EXPECT_TRUE(link.ends_with("/%D7%A7%D7%95%D7%91%D7%A5%20%231.txt")) << link;
        EXPECT_EQ(fetch(link), content);
        EXPECT_TRUE(waitUntil([&] { return !shows(pid, "Your file is ready to share"); })) << "the window stays";
    }

private:
    tl::expected<servers::NginxServer, std::string> server_;
};

TEST_F(LiveShareTest, TheCommandUploadsTheFileAndReturnCopiesItsLink) {
    startAgent();
    const auto result = share({"קובץ #1.txt"}); // from the folder that the command runs in
    EXPECT_EQ(result.exit, (ExitStatus{0, 0})) << result.errors;
    EXPECT_EQ(result.output + result.errors, "");
    expectCopiedLinkLeadsToTheFile(agent().process().pid());
}

TEST_F(LiveShareTest, WithoutAnAgentTheCommandStartsOne) {
    const auto result = share({file()});
    ASSERT_EQ(result.exit, (ExitStatus{0, 0})) << result.errors;
    const auto status = nlohmann::json::parse(desktop().run({agentExecutable(), "status", "--json"}).output);
    expectCopiedLinkLeadsToTheFile(status.at("pid"));
    EXPECT_EQ(desktop().run({agentExecutable(), "quit"}).exit, (ExitStatus{0, 0}));
}

TEST_F(LiveShareTest, DeadMountFreezesNothing) {
    startAgent({{"LD_PRELOAD", QUILLANE_HANGING_FILES}});
    const auto pid = agent().process().pid();
    EXPECT_EQ(share({"/away/report.odt"}).exit, (ExitStatus{0, 0}));
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(desktop().home() / "asked"); }));
    EXPECT_TRUE(waitUntil([&] { return shows(pid, "Uploading file…"); }));
    EXPECT_TRUE(agent().status().is_object()); // it still answers
    EXPECT_EQ(share({desktop().home()}).exit, (ExitStatus{0, 0}));
    EXPECT_TRUE(
        waitUntil([&] { return shows(pid, "Select a regular file. To share a folder, compress it to a ZIP first."); }));
    EXPECT_EQ(share({file()}).exit, (ExitStatus{0, 0}));
    expectCopiedLinkLeadsToTheFile(pid);
    EXPECT_EQ(endAgent(), (ExitStatus{0, 0}));
}

TEST_F(LiveShareTest, SeveralFilesAndFoldersAreRefusedWithTheirMessages) {
    startAgent();
    const auto pid = agent().process().pid();
    const auto several = share({file(), file()});
    EXPECT_EQ(several.exit, (ExitStatus{1, 0}));
    EXPECT_EQ(several.errors, "Select one file to share.\n");
    EXPECT_TRUE(waitUntil([&] { return shows(pid, "Select one file to share."); }));
    EXPECT_EQ(share({desktop().home()}).exit, (ExitStatus{0, 0}));
    EXPECT_TRUE(
        waitUntil([&] { return shows(pid, "Select a regular file. To share a folder, compress it to a ZIP first."); }));
}

TEST_F(LiveShareTest, TheMenuRowOpensThePanel) {
    startAgent();
    auto menu = required(LiveMenu::open(desktop()));
    ASSERT_TRUE(menu.choose("Quillane Share…"));
    const auto pid = agent().process().pid();
    EXPECT_TRUE(waitUntil([&] { return shows(pid, "Choose a file to upload to " + address().substr(7)); }));
    ASSERT_TRUE(desktop().waitUntilInFront(pid));
    ASSERT_TRUE(desktop().run({"xdotool", "type", "--delay", "20", file()}).succeeded());
    desktop().keyboard().tap(Key::enter);
    expectCopiedLinkLeadsToTheFile(pid);
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"

namespace quillane::live {
namespace {

using LiveCommandsTest = AgentTest;

TEST_F(LiveCommandsTest, StatusSaysEverythingThatIsAsked) {
    startAgent();
    const auto status = agent().status();
    EXPECT_EQ(status.at("pid"), agent().process().pid());
    EXPECT_EQ(status.at("paused"), false);
    EXPECT_EQ(status.at("language"), "en");
    EXPECT_EQ(status.at("permissions").at("inputMonitoring"), true);
    EXPECT_EQ(status.at("permissions").at("accessibility"), true);
    EXPECT_EQ(status.at("inputSource").at("isRTL"), false);
    EXPECT_EQ(status.at("screenSharingSuspended"), false);
    for (const char* option :
         {"shiftEnglish", "languageSwitch", "writingDirection", "fixWrongLayout", "excludeScreenSharing"}) {
        EXPECT_EQ(status.at("options").at(option), true) << option;
    }
    EXPECT_EQ(status.at("options").at("keepAwake"), false);
    EXPECT_FALSE(status.at("version").get<std::string>().empty());
    EXPECT_TRUE(agent().waitForStatus([](const auto& now) { return now.at("statusItemVisible") == true; }));
}

TEST_F(LiveCommandsTest, WithoutAnAgentACommandFails) {
    for (const char* command : {"status", "pause", "resume", "quit"}) {
        const auto result = desktop().run({agentExecutable(), command});
        EXPECT_EQ(result.exit, (ExitStatus{1, 0})) << command;
        EXPECT_EQ(result.errors, "quillane is not running\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(LiveCommandsTest, UnknownCommandsAndFlagsPrintUsageAndExitWithTwo) {
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"frobnicate"}, {"--frobnicate"}, {"status", "--xml"}, {"pause", "now"}, {""}}) {
        auto command = words;
        command.insert(command.begin(), agentExecutable());
        const auto result = desktop().run(command);
        EXPECT_EQ(result.exit, (ExitStatus{2, 0})) << words.front();
        EXPECT_NE(result.errors.find("usage: quillane"), std::string::npos) << result.errors;
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(LiveCommandsTest, ControlCharactersOfArgumentsAreNotPrinted) {
    for (const auto& words : std::vector<std::vector<std::string>>{{"\x1b[31mred"}, {"share", "\x1b[31mred\x9b"}}) {
        auto command = words;
        command.insert(command.begin(), agentExecutable());
        const auto result = desktop().run(command, defaultTimeout, {{"DISPLAY", ""}});
        EXPECT_FALSE(result.succeeded());
        EXPECT_EQ((result.errors + result.output).find('\x1b'), std::string::npos) << words.front();
    }
    EXPECT_NE(desktop().run({agentExecutable(), "\x1b[31mred"}).errors.find("\\u001b[31mred"), std::string::npos);
}

TEST_F(LiveCommandsTest, StatusNamesAnApplicationWithoutAccessibility) {
    startAgent();
    auto silent = required(desktop().startApplication(editors().front().command, {{"NO_AT_BRIDGE", "1"}}));
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) {
        return status.at("passwordFields").at("status") == "Password fields in Mousepad cannot be recognized";
    })) << agent().status().at("passwordFields");
    EXPECT_NE(agent().command({"status"}).output.find("\nPassword fields in Mousepad cannot be recognized\n"),
              std::string::npos);
    silent.end();
    startEditor(editors().front());
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) {
        return status.at("passwordFields").at("recognized") == true &&
               status.at("passwordFields").at("status").is_null();
    })) << agent().status().at("passwordFields");
}

TEST_F(LiveCommandsTest, ASecondStartTalksToTheFirst) {
    startAgent();
    const auto second = desktop().run({agentExecutable()});
    EXPECT_EQ(second.exit, (ExitStatus{0, 0})) << second.errors;
    EXPECT_TRUE(agent().process().isRunning());
    EXPECT_EQ(agent().status().at("pid"), agent().process().pid());
    EXPECT_TRUE(desktop().waitUntilInFront(agent().process().pid())) << "nothing is shown";
    const auto active = desktop().screen().activeWindow();
    ASSERT_TRUE(active);
    EXPECT_EQ(desktop().screen().text(*active, "_NET_WM_NAME"), "Quillane — Settings");
}

TEST_F(LiveCommandsTest, APauseOutlivesTheAgent) {
    startAgent();
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    EXPECT_EQ(endAgent(), (ExitStatus{0, 0}));
    auto again = LiveAgent::start(desktop(), false);
    ASSERT_TRUE(again) << again.error();
    EXPECT_EQ(again->status().at("paused"), true);
    EXPECT_EQ(again->status().at("monitorRunning"), false);
}

TEST_F(LiveCommandsTest, WithoutAnXServerTheStartFails) {
    for (const char* display : {":4095", ""}) {
        const auto result = desktop().run({agentExecutable()}, defaultTimeout, {{"DISPLAY", display}});
        EXPECT_EQ(result.exit, (ExitStatus{1, 0}));
        EXPECT_NE(result.errors.find("cannot open display"), std::string::npos) << result.errors;
    }
}

TEST_F(LiveCommandsTest, UnderWaylandItSaysWhatDoesNotWork) {
    auto process = desktop().startProcess({agentExecutable()},
                                          {{"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "wayland"}});
    ASSERT_TRUE(process) << process.error();
    const auto log = [&] { return readFile(desktop().logFolder() / "quillane.log"); };
    EXPECT_TRUE(waitUntil([&] { return log().find("need an X11 session") != std::string::npos; })) << log();
    EXPECT_TRUE(waitUntil([&] { return desktop().run({agentExecutable(), "status"}).succeeded(); }));
    EXPECT_TRUE(process->isRunning());
}

TEST_F(LiveCommandsTest, ADamagedSettingsFileIsKeptBesideAndTheDefaultsHold) {
    const auto folder = desktop().home() / ".config/quillane";
    std::filesystem::create_directories(folder);
    const std::string damaged("bplist00\x00\xff\xfe garbage", 19);
    ASSERT_TRUE(writeFile(folder / "defaults.plist", damaged));
    startAgent();
    EXPECT_EQ(agent().status().at("options").at("shiftEnglish"), true);
    bool kept = false;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        kept = kept || (entry.path().filename() != "defaults.plist" && readFile(entry.path()) == damaged);
    }
    EXPECT_TRUE(kept);
}

} // namespace
} // namespace quillane::live

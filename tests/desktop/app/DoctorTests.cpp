// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/HistoryDesktop.hpp"

#include <csignal>

namespace quillane::live {
namespace {

class LiveDoctorTest : public AgentTest {
protected:
    /// Copies are recorded from the agent's start on.
    void recordCopies() {
        core::ClipboardOptions options;
        options.enabled = true;
        require(writeHistorySettings(desktop(), options), "the settings cannot be written");
    }

    /// What `quillane doctor --json` says; null when it says nothing that can be read.
    nlohmann::json diagnosis() {
        last_ = desktop().run({agentExecutable(), "doctor", "--json"});
        return nlohmann::json::parse(last_.output, nullptr, false);
    }

    [[nodiscard]] const CommandResult& last() const { return last_; }

    /// The state and the value of a line.
    static std::string line(const nlohmann::json& diagnosis, const std::string& name) {
        for (const auto& finding : diagnosis.value("findings", nlohmann::json::array())) {
            if (finding.at("name") == name) {
                return finding.at("state").get<std::string>() + ": " + finding.at("value").get<std::string>();
            }
        }
        return "no line " + name + " in " + diagnosis.dump();
    }

    /// Asks until the line says this.
    bool waitForLine(const std::string& name, const std::string& expected) {
        return waitUntil([&] { return line(diagnosis(), name) == expected; });
    }

    /// The output contains nothing that the previous test has created.
    void expectNoSecrets(const std::filesystem::path& program) {
        for (const auto& words :
             std::vector<std::vector<std::string>>{{program, "doctor"}, {program, "doctor", "--json"}}) {
            const auto output = desktop().run(words).output;
            EXPECT_NE(output.find("input sources"), std::string::npos) << output;
            for (const std::string& secret :
                 {std::string("zebra"), std::string("walrus"), std::string("giraffe"), desktop().home().string()}) {
                EXPECT_EQ(output.find(secret), std::string::npos) << output;
            }
        }
    }

private:
    CommandResult last_;
};

TEST_F(LiveDoctorTest, AHealthyDesktopHasNoProblem) {
    recordCopies();
    auto keyring = required(startKeyring(desktop()));
    startAgent();
    startEditor(editors().front());
    desktop().keyboard().type("a");
    EXPECT_TRUE(waitForLine("key events", "ok: seen")) << diagnosis();
    EXPECT_TRUE(waitForLine("status item", "ok: in the system tray")) << diagnosis();
    EXPECT_TRUE(waitForLine("Secret Service", "ok: answers")) << diagnosis();
    nlohmann::json all;
    EXPECT_TRUE(waitUntil([&] {
        all = diagnosis();
        return last().exit == ExitStatus{0, 0};
    })) << all;
    EXPECT_EQ(all.at("healthy"), true) << all;
    EXPECT_EQ(all.at("answeredBy"), "agent");
    EXPECT_EQ(line(all, "window system"), "ok: X11");
    EXPECT_EQ(line(all, "accessibility permission"), "ok: granted");
    EXPECT_EQ(line(all, "event tap"), "ok: made and enabled");
    EXPECT_EQ(line(all, "accessibility bus"), "ok: answers");
    EXPECT_TRUE(line(all, "focused element").starts_with("ok: AXTextArea in ")) << all;
    EXPECT_TRUE(line(all, "input sources").starts_with("ok: English (US), Hebrew; in use: English (US)")) << all;
}

TEST_F(LiveDoctorTest, ADesktopWithoutTrayBusAndKeyringIsSeenToBeBroken) {
    startDesktop({.tray = false, .accessibility = false, .startsServices = false});
    recordCopies();
    auto agent = required(LiveAgent::start(desktop(), false));
    const auto all = diagnosis();
    EXPECT_EQ(last().exit, (ExitStatus{1, 0})) << all;
    EXPECT_EQ(all.at("healthy"), false);
    EXPECT_EQ(line(all, "status item"), "problem: not shown: no system tray runs");
    EXPECT_EQ(line(all, "accessibility bus"), "problem: not installed");
    EXPECT_EQ(line(all, "accessibility permission"), "problem: not granted");
    EXPECT_EQ(line(all, "event tap"), "problem: not made");
    EXPECT_EQ(line(all, "Secret Service"), "problem: not installed");
    for (const auto& finding : all.at("findings")) {
        const bool needsAdvice = finding.at("state") == "problem" || finding.at("state") == "warning";
        EXPECT_EQ(!finding.at("advice").get<std::string>().empty(), needsAdvice) << finding;
    }
}

TEST_F(LiveDoctorTest, WithoutAnAgentItLooksByItselfAndSaysSo) {
    nlohmann::json all;
    EXPECT_TRUE(waitUntil([&] {
        all = diagnosis();
        return last().exit == ExitStatus{0, 0};
    })) << all;
    EXPECT_EQ(all.at("answeredBy"), "command");
    EXPECT_EQ(line(all, "agent"), "warning: does not run; this command has looked by itself");
    EXPECT_EQ(line(all, "accessibility permission"), "ok: granted");
    EXPECT_EQ(line(all, "event tap"), "notApplicable: known to the running agent only");
    EXPECT_FALSE(desktop().run({agentExecutable(), "status"}).succeeded()) << "an agent has been left behind";
}

TEST_F(LiveDoctorTest, WithoutAScreenItSaysWhatIsLeftToBeFound) {
    CommandResult result;
    EXPECT_TRUE(waitUntil([&] {
        result = desktop().run({agentExecutable(), "doctor"}, defaultTimeout,
                               {{"DISPLAY", ""}, {"XDG_SESSION_TYPE", "tty"}});
        return result.output.find("\nok       accessibility bus: answers") != std::string::npos;
    })) << result.output;
    EXPECT_EQ(result.exit, (ExitStatus{1, 0})) << result.errors;
    EXPECT_NE(result.output.find("\nproblem  window system: cannot open display"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("\n-        input sources: unknown without a screen"), std::string::npos)
        << result.output;
}

TEST_F(LiveDoctorTest, AnAgentThatHangsIsReportedInsteadOfWaitedFor) {
    startAgent();
    agent().process().signal(SIGSTOP);
    const auto all = diagnosis();
    agent().process().signal(SIGCONT);
    EXPECT_EQ(last().exit, (ExitStatus{1, 0})) << all;
    EXPECT_EQ(line(all, "agent"), "problem: runs but does not answer; this command has looked by itself");
    EXPECT_TRUE(agent().waitForStatus([](const auto&) { return true; }));
}

TEST_F(LiveDoctorTest, NothingTypedOrCopiedAndNoHomePathIsSaid) {
    recordCopies();
    startAgent();
    startEditor(editors().front());
    desktop().keyboard().type("zebra");
    expectEditorText("zebra");
    ASSERT_TRUE(desktop().run({"sh", "-c", "printf walrus | xclip -selection clipboard -i"}).succeeded());
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("clipboard").at("entries") == 1; }));
    // From a folder at home, as after building it there.
    const auto copy = desktop().home() / "giraffe/quillane";
    std::filesystem::create_directories(copy.parent_path());
    std::filesystem::copy_file(agentExecutable(), copy);
    expectNoSecrets(agentExecutable());
    EXPECT_EQ(endAgent(), (ExitStatus{0, 0}));
    expectNoSecrets(copy); // looks by itself
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/Doctor.hpp"

#include "app/AppDelegateTest.hpp"
#include "core/clipboard/ClipboardOptions.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <sstream>

namespace quillane {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The running agent on a healthy desktop, with an editor in front.
class DoctorTest : public AppDelegateTest {
protected:
    DoctorTest() { desktop.withFrontApplication("com.apple.TextEdit", "TextEdit").withFocusedTextField("AXTextArea"); }

    void recordCopies() {
        core::ClipboardOptions options;
        options.enabled = true;
        defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
    }

    /// The agent runs and has seen a key.
    AppDelegate& launchAndType() {
        auto& launched = launch();
        desktop.type(0).settle();
        return launched;
    }

    /// The line of the agent's answer that has this name: its state, a colon, and its value.
    [[nodiscard]] std::string line(const std::string& name) {
        const auto reply = nlohmann::json::parse(delegate->handleControlRequest({"doctor", {"--json"}}).text);
        for (const auto& finding : reply.at("findings")) {
            if (finding.at("name") == name) {
                return finding.at("state").get<std::string>() + ": " + finding.at("value").get<std::string>();
            }
        }
        return "no such line";
    }

    [[nodiscard]] ControlReply answer() { return delegate->handleControlRequest({"doctor", {}}); }
};

TEST_F(DoctorTest, AHealthyAgentSaysWhatItHasFoundAndSucceeds) {
    launchAndType();
    EXPECT_EQ(line("agent"), "ok: runs and has answered");
    EXPECT_EQ(line("program"), "ok: Quillane 1.2");
    EXPECT_EQ(line("system"), "ok: macOS 15.5");
    EXPECT_EQ(line("signature"), "ok: valid, team TEAM123456");
    EXPECT_EQ(line("location"), "ok: /Applications/Quillane.app");
    EXPECT_EQ(line("accessibility permission"), "ok: granted");
    EXPECT_EQ(line("input monitoring permission"), "ok: granted");
    EXPECT_EQ(line("event tap"), "ok: made and enabled");
    EXPECT_EQ(line("key events"), "ok: seen");
    EXPECT_EQ(line("secure input"), "ok: off");
    EXPECT_EQ(line("input sources"), "ok: U.S., Hebrew; in use: U.S.");
    EXPECT_EQ(line("focused element"), "ok: AXTextArea in com.apple.TextEdit");
    EXPECT_EQ(line("App Nap"), "ok: held off");
    EXPECT_EQ(line("status item"), "ok: in the menu bar");
    EXPECT_EQ(line("login item"), "ok: does not start at login");
    EXPECT_EQ(line("updater"), "ok: checks automatically");
    const auto reply = answer();
    EXPECT_TRUE(reply.ok);
    EXPECT_FALSE(reply.problem);
}

TEST_F(DoctorTest, TheTextHasALineForEachFindingAndOneThatSumsUp) {
    launchAndType();
    desktop.statusItem.setVisible(false);
    const auto reply = answer();
    EXPECT_TRUE(reply.ok);
    EXPECT_TRUE(reply.problem);
    EXPECT_THAT(reply.text, HasSubstr("\nproblem  status item: not in the menu bar. Quit programs"));
    EXPECT_THAT(reply.text, HasSubstr("\n-        window system: this system has only one\n"));
    EXPECT_THAT(reply.text, StartsWith("ok       agent: runs and has answered\n"));
    EXPECT_THAT(reply.text, ::testing::EndsWith("\n1 problem, 0 warnings"));
    const auto findings = nlohmann::json::parse(delegate->handleControlRequest({"doctor", {"--json"}}).text);
    EXPECT_EQ(findings.at("healthy"), false);
    EXPECT_EQ(findings.at("answeredBy"), "agent");
    EXPECT_EQ(std::ranges::count(reply.text, '\n'), findings.at("findings").size());
}

TEST_F(DoctorTest, AMissingPermissionIsSeenWithTheTapThatWaitsForIt) {
    desktop.withPermissions({core::MacPermission::inputMonitoring});
    launch();
    EXPECT_EQ(line("accessibility permission"), "problem: not granted");
    EXPECT_EQ(line("input monitoring permission"), "ok: granted");
    EXPECT_EQ(line("event tap"), "problem: not made");
}

TEST_F(DoctorTest, ATapThatIsRefusedOrDisabledIsSeen) {
    desktop.tap.permitWhen([] { return false; });
    launch();
    EXPECT_EQ(line("event tap"), "problem: not made although the permissions are granted");
    desktop.tap.permitWhen([] { return true; });
    desktop.tap.setStartsDisabled(true);
    desktop.queue.advance(std::chrono::seconds{2});
    EXPECT_EQ(line("event tap"), "problem: made, but the system has disabled it");
    EXPECT_EQ(line("key events"), "notApplicable: needs the event tap");
}

TEST_F(DoctorTest, ATapThatIsStoppedHasGone) {
    launchAndType();
    EXPECT_TRUE(delegate->handleControlRequest({"pause", {}}).ok);
    EXPECT_EQ(line("event tap"), "notApplicable: not made: everything is paused");
}

TEST_F(DoctorTest, KeysThatNeverArriveAreMissed) {
    launch();
    EXPECT_EQ(line("key events"), "warning: none seen yet");
    desktop.type(0).settle();
    EXPECT_EQ(line("key events"), "ok: seen");
}

TEST_F(DoctorTest, SecureInputIsSeen) {
    launchAndType();
    desktop.secureInput.setEnabled(true);
    EXPECT_EQ(line("secure input"), "warning: on");
}

TEST_F(DoctorTest, InputSourcesThatCannotBeReadOrDoNotHelpAreSeen) {
    launchAndType();
    desktop.withInputSources({fakes::english()});
    EXPECT_EQ(line("input sources"), "warning: U.S.; in use: U.S.");
    desktop.inputSources.setListReadable(false);
    EXPECT_EQ(line("input sources"), "problem: the system lists none");
}

TEST_F(DoctorTest, AnApplicationWithoutAFocusedElementIsNamed) {
    launchAndType();
    desktop.accessibility.focus(desktop.frontPid(), nullptr);
    EXPECT_EQ(line("focused element"), "warning: none in com.apple.TextEdit");
    desktop.withFrontApplication(std::nullopt, "unnamed");
    EXPECT_EQ(line("focused element"), "warning: none in an application without identifier");
}

TEST_F(DoctorTest, AnApplicationThatHangsCostsHalfASecondAtMost) {
    launchAndType();
    desktop.accessibility.forgetCalls();
    EXPECT_THAT(line("focused element"), StartsWith("ok"));
    std::chrono::milliseconds together{};
    for (const auto& call : desktop.accessibility.calls()) {
        ASSERT_TRUE(call.timeout) << call.what;
        together += *call.timeout;
    }
    EXPECT_LE(together, std::chrono::milliseconds{500});
}

TEST_F(DoctorTest, AppNapThatIsNotHeldOffIsSeen) {
    launchAndType();
    desktop.systemInspector.facts.holdsActivity = false;
    EXPECT_EQ(line("App Nap"), "problem: may slow Quillane down");
}

TEST_F(DoctorTest, AnUpdaterWithoutKeyIsSeen) {
    launchAndType();
    desktop.updater.key = false;
    EXPECT_EQ(line("updater"), "warning: off: this build has no update key");
}

TEST_F(DoctorTest, ALoginItemThatWaitsForApprovalIsSeen) {
    launchAndType();
    desktop.loginItem.current = LoginItemStatus::requiresApproval;
    EXPECT_EQ(line("login item"), "warning: waits for your approval");
}

TEST_F(DoctorTest, AMissingSecretServiceIsAProblemWhileCopiesAreRecorded) {
    recordCopies();
    launchAndType();
    desktop.systemInspector.facts.secretService = core::BusService::absent;
    EXPECT_EQ(line("Secret Service"), "problem: not installed");
    core::ClipboardOptions off;
    EXPECT_FALSE(off.enabled);
    defaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(off));
    launchAndType();
    EXPECT_EQ(line("Secret Service"), "warning: not installed");
}

TEST_F(DoctorTest, NothingThatIsTypedOrCopiedAndNoPathOfTheHomeFolderIsSaid) {
    recordCopies();
    launch();
    desktop.settle();
    desktop.vaultQueue.wait();
    desktop.settle();
    desktop.pasteboard.copyText("copied text");
    desktop.queue.advance(std::chrono::milliseconds{500});
    ASSERT_EQ(delegate->statusReport().clipboard.entries, 1U);
    auto& field = desktop.accessibility.tree(desktop.frontPid()).addTextField("AXTextArea");
    field.with("AXValue", "typed text").with("AXTitle", "typed title").with("AXDescription", "typed description");
    desktop.accessibility.focus(desktop.frontPid(), &field);
    desktop.type(0).settle();
    for (const auto& arguments : {std::vector<std::string>{}, std::vector<std::string>{"--json"}}) {
        const auto text = delegate->handleControlRequest({"doctor", arguments}).text;
        EXPECT_THAT(text,
                    AllOf(Not(HasSubstr("copied")), Not(HasSubstr("typed")), Not(HasSubstr(files.path().string()))));
    }
}

TEST(DoctorByItself, PermissionsThatMacOSGivesToTheTerminalAreNotReported) {
    fakes::FakeDesktop desktop;
    desktop.platform.updater.reset();
    EXPECT_FALSE(doctor::sessionFacts(desktop.platform, core::Respondent::command).granted);
    EXPECT_TRUE(doctor::sessionFacts(desktop.platform, core::Respondent::agent).granted);
    desktop.permissions.grantOnRequest(); // of the whole session, as on Linux
    EXPECT_TRUE(doctor::sessionFacts(desktop.platform, core::Respondent::command).granted);
    EXPECT_FALSE(doctor::sessionFacts(desktop.platform, core::Respondent::command).updater);
}

TEST(DoctorByItself, ALinkToTheHomeFolderHidesItToo) {
    const live::TemporaryFolder files;
    const auto home = files.path() / "real home";
    std::filesystem::create_directory(home);
    std::filesystem::create_directory_symlink(home, files.path() / "home");
    const auto real = std::filesystem::canonical(home) / "a private name/quillane";
    EXPECT_EQ(doctor::programFacts("1.2", {real, true}, files.path() / "home").location.shown, "~");
}

} // namespace
} // namespace quillane

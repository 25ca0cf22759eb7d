// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"
#include "desktop/fixture/MockServices.hpp"

#include <csignal>

namespace quillane::live {
namespace {

constexpr auto sessionManager = "org.gnome.SessionManager";

class KeepAwakeTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        login_.emplace(required(startLoginManager(desktop())));
        manager_.emplace(required(startInhibitionService(desktop(), sessionManager)));
    }

    [[nodiscard]] bool isKeptAwake(bool expected) {
        return waitUntil([&] {
            const bool system = loginInhibitors(desktop()).find("Quillane Keep Awake") != std::string::npos;
            const bool display = !sessionInhibitors(desktop(), sessionManager).empty();
            return system == expected && display == expected;
        });
    }

    std::optional<ChildProcess> login_;
    std::optional<ChildProcess> manager_;
};

TEST_F(KeepAwakeTest, TheMenuRowKeepsTheMachineAndTheDisplayAwakeUntilItIsChosenAgain) {
    startAgent(withSystemBus(desktop()));
    EXPECT_TRUE(isKeptAwake(false));
    for (const bool on : {true, false}) {
        auto menu = required(LiveMenu::open(desktop()));
        ASSERT_TRUE(menu.choose("Keep Awake"));
        EXPECT_TRUE(isKeptAwake(on));
        EXPECT_TRUE(agent().waitForStatus(
            [&](const nlohmann::json& status) { return status.at("keepAwake").at("active") == on; }));
    }
}

TEST_F(KeepAwakeTest, PausingLetsTheMachineSleepAndResumingKeepsItAwakeAgain) {
    require(writeAgentSettings(desktop(), {{"KeepAwakeEnabled", "<true/>"}}), "cannot write the settings");
    startAgent(withSystemBus(desktop()));
    EXPECT_TRUE(isKeptAwake(true));
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    EXPECT_TRUE(isKeptAwake(false));
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    EXPECT_TRUE(isKeptAwake(true));
    endAgent();
    EXPECT_TRUE(isKeptAwake(false));
}

TEST_F(KeepAwakeTest, NothingIsLeftOfAKilledAgentAtTheLoginManager) {
    require(writeAgentSettings(desktop(), {{"KeepAwakeEnabled", "<true/>"}}), "cannot write the settings");
    startAgent(withSystemBus(desktop()));
    ASSERT_TRUE(isKeptAwake(true));
    agent().process().signal(SIGKILL);
    // A session manager drops the inhibitors of a client that has left the bus; this one only keeps notes.
    EXPECT_TRUE(waitUntil([&] { return loginInhibitors(desktop()).find("Quillane") == std::string::npos; }));
}

} // namespace
} // namespace quillane::live

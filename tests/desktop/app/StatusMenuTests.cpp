// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"
#include "desktop/fixture/MockServices.hpp"

#include <algorithm>

namespace quillane::live {
namespace {

class LiveStatusMenuTest : public AgentTest {
protected:
    /// Starts the agent in a language ("en", "he", "ar") and opens its menu.
    LiveMenu openIn(const std::string& language) {
        require(chooseAgentLanguage(desktop(), language), "cannot write the settings");
        startAgent();
        EXPECT_EQ(agent().status().at("language"), language);
        return required(LiveMenu::open(desktop()));
    }
};

TEST_F(LiveStatusMenuTest, HasItsRowsInOrder) {
    const auto rows = openIn("en").rows();
    const std::string version = agent().status().at("version");
    const std::vector<std::string> expected{"Quillane " + version,
                                            "Shortcuts active",
                                            "",
                                            "Capture Area to Clipboard…",
                                            "Clipboard history",
                                            "Quillane Share…",
                                            "Keep Awake",
                                            "",
                                            "Settings",
                                            "Permissions",
                                            "Quick test",
                                            "Update settings",
                                            "Check for updates now",
                                            "",
                                            "Temporary English with Shift",
                                            "Switch language with Alt + Shift",
                                            "Paragraph direction shortcuts",
                                            "",
                                            "Pause all",
                                            "Quit Quillane"};
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].isSeparator, expected[i].empty()) << i;
        if (!expected[i].empty() && i != 1) { // the second row says what runs
            EXPECT_EQ(rows[i].title, expected[i]) << i;
        }
    }
    EXPECT_FALSE(rows[0].isEnabled);
    for (const std::size_t toggle : {14U, 15U, 16U}) {
        EXPECT_TRUE(rows[toggle].isChecked) << rows[toggle].title;
    }
}

/// On a desktop without a tray.
class WithoutTrayTest : public AgentTest {
protected:
    void SetUp() override { startDesktop({.tray = false}); }
};

TEST_F(WithoutTrayTest, StartIsAnnouncedByANotification) {
    const auto notices = required(startNotifications(desktop()));
    require(chooseAgentLanguage(desktop(), "he"), "cannot write the settings");
    startAgent();
    EXPECT_EQ(agent().status().at("statusItemVisible"), false);
    EXPECT_TRUE(waitUntil([&] {
        return shownNotifications(desktop()) ==
               "היישום Quillane פועל|לא נמצא מגש מערכת. פתיחה נוספת של Quillane תציג את ההגדרות.";
    })) << shownNotifications(desktop());
}

TEST_F(WithoutTrayTest, WithoutNotificationsEitherAStartShowsTheSettingsWhichSaySo) {
    startAgent();
    ASSERT_TRUE(desktop().waitUntilInFront(agent().process().pid()));
    const auto root = desktop().accessibility().application(agent().process().pid());
    ASSERT_TRUE(root);
    EXPECT_TRUE(desktop().accessibility().find(*root, [](const AccessibleNode& node) {
        return node.name == "There is no system tray. Open Quillane again to see its settings." &&
               node.is(AccessibleNode::State::showing);
    }));
}

class LiveStatusMenuInTest : public LiveStatusMenuTest, public testing::WithParamInterface<const char*> {};

TEST_P(LiveStatusMenuInTest, EveryRowIsInTheLanguage) {
    const auto rows = openIn(GetParam()).rows();
    ASSERT_EQ(rows.size(), 20U);
    // Hebrew letters are U+0590 to U+05FF, in UTF-8 beginning with D6 or D7; Arabic ones U+0600 to U+06FF with D8 to
    // DB.
    const bool hebrew = std::string(GetParam()) == "he";
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (!rows[i].isSeparator && i != 5) { // the share row's title is a name
            EXPECT_TRUE(std::ranges::any_of(rows[i].title, [&](char c) {
                const auto byte = static_cast<unsigned char>(c);
                return hebrew ? byte == 0xD6 || byte == 0xD7 : byte >= 0xD8 && byte <= 0xDB;
            })) << rows[i].title;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Language, LiveStatusMenuInTest, testing::Values("he", "ar"),
                         [](const auto& parameter) { return std::string(parameter.param); });

TEST_F(LiveStatusMenuTest, PauseAndResumeAreOneRow) {
    ASSERT_TRUE(openIn("en").choose("Pause all"));
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("paused") == true; }));
    ASSERT_TRUE(required(LiveMenu::open(desktop())).choose("Resume"));
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("paused") == false; }));
}

TEST_F(LiveStatusMenuTest, ATogglesCheckMarkFollowsIt) {
    ASSERT_TRUE(openIn("en").choose("Temporary English with Shift"));
    EXPECT_TRUE(
        agent().waitForStatus([](const auto& status) { return status.at("options").at("shiftEnglish") == false; }));
    EXPECT_FALSE(required(LiveMenu::open(desktop())).rows().at(14).isChecked);
}

TEST_F(LiveStatusMenuTest, QuitEndsTheAgent) {
    ASSERT_TRUE(openIn("en").choose("Quit Quillane"));
    EXPECT_EQ(agent().process().waitForExit(defaultTimeout), (ExitStatus{0, 0}));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace quillane::live {
namespace {

class LiveSettingsTest : public AgentTest {
protected:
    void open() {
        require(desktop().run({agentExecutable()}).succeeded(), "the second start fails");
        require(desktop().waitUntilInFront(agent().process().pid()), "the settings window is not in front");
    }

    /// Opens the window for the first time on this desktop and waits until its position is final: until then the agent
    /// keeps it entirely on the screen, whoever moves it. The position is then stored.
    void openAndSettle() {
        open();
        waitUntilNoted("NSWindow Frame QuillaneSettings");
    }

    /// Waits until the settings contain this window position, a moment after its last move.
    void waitUntilNoted(const std::string& text) {
        require(waitUntil([&] { return readFile(settingsFile()).find(text) != std::string::npos; }),
                "the place of the window is not noted");
    }

    [[nodiscard]] std::filesystem::path settingsFile() { return desktop().home() / ".config/quillane/defaults.plist"; }

    [[nodiscard]] std::string title() {
        const auto active = desktop().screen().activeWindow();
        return active ? desktop().screen().text(*active, "_NET_WM_NAME") : std::string();
    }

    /// Goes on with the keyboard alone: from the window to its nth control, and presses it.
    void pressControl(int position) {
        std::vector<std::string> keys{"xdotool", "key"};
        keys.insert(keys.end(), static_cast<std::size_t>(position), "Tab");
        keys.emplace_back("space");
        require(desktop().run(keys).succeeded(), "xdotool fails");
    }

    /// A control of the window by what assistive technologies call it.
    [[nodiscard]] std::optional<AccessibleNode> control(const std::string& name, const std::string& role) {
        const auto root = desktop().accessibility().application(agent().process().pid());
        return !root ? std::nullopt : desktop().accessibility().find(*root, [&](const AccessibleNode& node) {
            return node.name == name && node.role == role && node.is(AccessibleNode::State::showing);
        });
    }

    /// The position of the active window, as printed by xdotool.
    [[nodiscard]] std::string geometry() {
        const auto active = desktop().screen().activeWindow();
        const auto said = active ? desktop().run({"xdotool", "getwindowgeometry", std::to_string(*active)}).output : "";
        return said.substr(std::min(said.find('\n'), said.size()));
    }

    [[nodiscard]] static int numberAfter(const std::string& text, std::string_view label) {
        const auto at = text.find(label);
        return at == std::string::npos ? -1 : std::atoi(text.c_str() + at + label.size());
    }

    [[nodiscard]] bool shows(const std::string& name, const std::string& role) {
        return control(name, role).has_value();
    }

    void closeWindow() {
        const auto window = desktop().screen().activeWindow();
        require(window.has_value(), "no window is active");
        require(desktop().run({"wmctrl", "-i", "-c", std::to_string(*window)}).succeeded(), "wmctrl fails");
        require(waitUntil([&] { return std::ranges::count(desktop().screen().managedWindows(), *window) == 0; }),
                "the window stays open");
    }

    static constexpr auto refresh = std::chrono::seconds(2); ///< between two refreshes of the agent

    /// The controls of the window in their order: the language, the pages, then the switches of the first page.
    static constexpr auto pageRole = "page tab";
    static constexpr int firstSwitch = 3;
    static constexpr int loginSwitch = 8;
};

TEST_F(LiveSettingsTest, TheKeyboardAloneReachesASwitchAndChangesTheAgent) {
    startAgent();
    open();
    pressControl(firstSwitch);
    EXPECT_TRUE(agent().waitForStatus(
        [](const nlohmann::json& status) { return status.at("options").at("shiftEnglish") == false; }));
}

TEST_F(LiveSettingsTest, ControlWClosesTheWindowAndControlQEndsTheAgentInTheHebrewLayout) {
    startAgent();
    open();
    const auto window = desktop().screen().activeWindow();
    ASSERT_TRUE(agent().useGroup(1, true));
    const auto pressWithControl = [&](Key key) {
        const auto& keyboard = desktop().keyboard();
        keyboard.press(Key::leftControl);
        keyboard.tap(key);
        keyboard.release(Key::leftControl);
    };
    pressWithControl(Key::w);
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(desktop().screen().managedWindows(), *window) == 0; }));
    open();
    pressWithControl(Key::q);
    EXPECT_EQ(agent().process().waitForExit(defaultTimeout), (ExitStatus{0, 0}));
}

TEST_F(LiveSettingsTest, ClosedAndOpenedAgainItIsWhereItWas) {
    startAgent();
    openAndSettle();
    EXPECT_EQ(title(), "Quillane — Settings");
    const auto first = desktop().screen().activeWindow();
    ASSERT_TRUE(desktop().run({"xdotool", "windowmove", std::to_string(*first), "120", "60"}).succeeded());
    waitUntilNoted("120 60 ");
    const auto place = geometry();
    ASSERT_TRUE(desktop().run({"wmctrl", "-i", "-c", std::to_string(*first)}).succeeded());
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(desktop().screen().managedWindows(), *first) == 0; }));
    open();
    EXPECT_TRUE(waitUntil([&] { return geometry() == place; })) << geometry() << "instead of" << place;
}

TEST_F(LiveSettingsTest, FrameOfAMaximizedOrFullScreenWindowDoesNotDriftAcrossLaunches) {
    std::string place;
    for (const auto* state : {"maximized_vert,maximized_horz", "fullscreen"}) {
        startAgent();
        openAndSettle();
        const auto window = std::to_string(*desktop().screen().activeWindow());
        if (place.empty()) {
            ASSERT_TRUE(desktop().run({"xdotool", "windowsize", window, "745", "725"}).succeeded());
            ASSERT_TRUE(desktop().run({"xdotool", "windowmove", window, "120", "30"}).succeeded());
            waitUntilNoted("120 30 745 725");
            place = geometry();
        }
        EXPECT_TRUE(waitUntil([&] { return geometry() == place; })) << geometry() << "before " << state;
        ASSERT_TRUE(desktop().run({"wmctrl", "-i", "-r", window, "-b", std::string("add,") + state}).succeeded());
        ASSERT_TRUE(waitUntil([&] { return geometry() != place; }));
        closeWindow();
        ASSERT_EQ(endAgent(), (ExitStatus{0, 0}));
    }
    startAgent();
    open();
    EXPECT_TRUE(waitUntil([&] { return geometry() == place; })) << geometry();
}

TEST_F(LiveSettingsTest, OpensAsAWholeOnAScreenWithAPanel) {
    const auto tray = desktop().run({"xdotool", "search", "--onlyvisible", "--class", "trayer"}).output;
    const auto panel = tray.substr(0, tray.find('\n'));
    ASSERT_TRUE(desktop()
                    .run({"xprop", "-id", panel, "-f", "_NET_WM_STRUT", "32c", "-set", "_NET_WM_STRUT", "0,0,28,0"})
                    .succeeded());
    const auto workArea = [&] { return desktop().screen().numbers(desktop().screen().root(), "_NET_WORKAREA"); };
    ASSERT_TRUE(waitUntil([&] { return workArea().size() >= 4 && workArea()[1] == 28; })) << tray;
    startAgent();
    open();
    int top = -1;
    int height = -1;
    const auto isInside = [&] {
        const auto frame =
            desktop().run({"xwininfo", "-frame", "-id", std::to_string(*desktop().screen().activeWindow())});
        top = numberAfter(frame.output, "Absolute upper-left Y:");
        height = numberAfter(frame.output, "Height:");
        return top >= 28 && top + height <= 800;
    };
    EXPECT_TRUE(waitUntil(isInside)) << top << ' ' << height;
    EXPECT_GT(height, 700);
}

TEST_F(LiveSettingsTest, OpenedAgainItShowsThePageThatWasLeft) {
    startAgent();
    open();
    const auto page = control("Updates", pageRole);
    ASSERT_TRUE(page);
    ASSERT_TRUE(desktop().accessibility().activate(*page));
    ASSERT_TRUE(waitUntil([&] { return shows("Quillane updates", "label"); }));
    closeWindow();
    open();
    EXPECT_TRUE(waitUntil([&] { return shows("Quillane updates", "label"); }));
}

TEST_F(LiveSettingsTest, AnAssistiveTechnologyFlipsASwitch) {
    startAgent();
    open();
    const auto found = control("Temporary English with Shift", "check box");
    ASSERT_TRUE(found) << desktop().accessibility().dump();
    EXPECT_TRUE(found->is(AccessibleNode::State::checked));
    ASSERT_TRUE(desktop().accessibility().activate(*found));
    EXPECT_TRUE(agent().waitForStatus(
        [](const nlohmann::json& status) { return status.at("options").at("shiftEnglish") == false; }));
    EXPECT_TRUE(waitUntil([&] {
        const auto now = desktop().accessibility().refreshed(*found);
        return now && !now->is(AccessibleNode::State::checked);
    }));
}

TEST_F(LiveSettingsTest, ALanguageThatIsChosenIsSeenInTheWindowAndTheMenuWithinOneRefresh) {
    startAgent();
    open();
    ASSERT_EQ(title(), "Quillane — Settings");
    ASSERT_TRUE(shows("General", pageRole));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(desktop().run({"xdotool", "key", "Tab", "Down"}).succeeded()); // from English to Hebrew
    EXPECT_TRUE(waitUntil([&] { return title() == "הגדרות Quillane"; }, refresh)) << title();
    EXPECT_TRUE(waitUntil([&] { return shows("כללי", pageRole); }, refresh));
    EXPECT_FALSE(shows("General", pageRole));
    EXPECT_TRUE(shows("אנגלית זמנית עם Shift", "check box"));
    EXPECT_EQ(agent().status().at("language"), "he");
    EXPECT_LT(std::chrono::steady_clock::now() - start, refresh);
    closeWindow(); // it lies over the tray
    const auto rows = required(LiveMenu::open(desktop())).rows();
    ASSERT_EQ(rows.size(), 20U);
    EXPECT_EQ(rows[8].title, "הגדרות");
    EXPECT_EQ(rows[18].title, "השהיית הכול");
}

TEST_F(LiveSettingsTest, TheLoginItemStartsTheAgentByTheRulesOfDesktops) {
    startAgent();
    open();
    pressControl(loginSwitch);
    const auto entry = desktop().home() / ".config" / "autostart" / "com.quillane.app.desktop";
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(entry); }));
    EXPECT_EQ(endAgent(), (ExitStatus{0, 0}));
    // Runs what a session runs when its user signs in.
    const auto session =
        desktop().run({"/bin/sh", "-c", "$(find /usr/lib /usr/libexec -name openbox-xdg-autostart) >/dev/null 2>&1"});
    ASSERT_TRUE(session.succeeded());
    const auto answer = [&] { return desktop().run({agentExecutable(), "status", "--json"}); };
    ASSERT_TRUE(waitUntil([&] { return answer().succeeded(); }));
    EXPECT_EQ(popUps(desktop().screen()).size(), 0U);
    EXPECT_FALSE(std::ranges::any_of(desktop().screen().managedWindows(), [&](auto window) {
        return desktop().screen().text(window, "_NET_WM_NAME") == "Quillane — Settings";
    }));
    EXPECT_TRUE(desktop().run({agentExecutable(), "quit"}).succeeded());
    EXPECT_TRUE(waitUntil([&] { return !answer().succeeded(); }));
}

TEST_F(LiveSettingsTest, TheLoginItemAppearsAndDisappears) {
    startAgent();
    open();
    const auto entry = desktop().home() / ".config" / "autostart" / "com.quillane.app.desktop";
    const auto exists = [&] { return std::filesystem::exists(entry); };
    EXPECT_FALSE(exists());
    pressControl(loginSwitch);
    ASSERT_TRUE(waitUntil(exists));
    std::ifstream in(entry);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(content.find("Exec=\"" + agentExecutable().string() + "\" --at-login"), std::string::npos) << content;
    pressControl(0);
    EXPECT_TRUE(waitUntil([&] { return !exists(); }));
}

TEST_F(LiveSettingsTest, ARevokedPermissionIsNoticedAndRequestedAgain) {
    startAgent();
    const auto granted = [&](bool expected) {
        return agent().waitForStatus([&](const nlohmann::json& status) {
            return status.at("permissions").at("accessibility") == expected && status.at("monitorRunning") == expected;
        });
    };
    ASSERT_TRUE(granted(true));
    const auto set = [&](const char* value) {
        return desktop()
            .run({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus", "--method",
                  "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", value})
            .succeeded();
    };
    ASSERT_TRUE(set("<false>"));
    EXPECT_TRUE(granted(false));
    ASSERT_TRUE(set("<true>"));
    EXPECT_TRUE(granted(true));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"

#include <algorithm>
#include <fstream>

namespace quillane::live {
namespace {

class LiveSettings : public AgentTest {
protected:
    void open() {
        require(desktop().run({agentExecutable()}).succeeded(), "the second start fails");
        require(desktop().waitUntilInFront(agent().process().pid()), "the settings window is not in front");
    }

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

    /// The controls of the window in their order: the language, the pages, then the switches of the first page.
    static constexpr int firstSwitch = 3;
    static constexpr int loginSwitch = 8;
};

TEST_F(LiveSettings, TheKeyboardAloneReachesASwitchAndChangesTheAgent) {
    startAgent();
    open();
    pressControl(firstSwitch);
    EXPECT_TRUE(agent().waitForStatus(
        [](const nlohmann::json& status) { return status.at("options").at("shiftEnglish") == false; }));
}

TEST_F(LiveSettings, ClosedAndOpenedAgainItIsWhereItWas) {
    startAgent();
    open();
    EXPECT_EQ(title(), "Quillane — Settings");
    const auto first = desktop().screen().activeWindow();
    ASSERT_TRUE(desktop().run({"xdotool", "windowmove", "--sync", std::to_string(*first), "120", "60"}).succeeded());
    const auto place = desktop().run({"xdotool", "getwindowgeometry", std::to_string(*first)}).output;
    ASSERT_TRUE(desktop().run({"wmctrl", "-i", "-c", std::to_string(*first)}).succeeded());
    ASSERT_TRUE(waitUntil([&] { return std::ranges::count(desktop().screen().managedWindows(), *first) == 0; }));
    open();
    const auto second = desktop().screen().activeWindow();
    EXPECT_EQ(desktop().run({"xdotool", "getwindowgeometry", std::to_string(*second)}).output.substr(place.find('\n')),
              place.substr(place.find('\n')));
}

TEST_F(LiveSettings, TheLoginItemAppearsAndDisappears) {
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

TEST_F(LiveSettings, APermissionThatIsTakenAwayIsNoticedAndAskedForAgain) {
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

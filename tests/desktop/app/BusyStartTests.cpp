// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <string_view>

namespace quillane::live {
namespace {

using namespace std::chrono_literals;

class LiveBusyStartTest : public AgentTest {
protected:
    /// The process that reports whether accessibility is on.
    [[nodiscard]] pid_t launcher() {
        const auto answer = desktop().run({"dbus-send", "--session", "--print-reply=literal",
                                           "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                                           "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:org.a11y.Bus"});
        const std::string_view text = answer.output;
        const auto begin = std::min(text.find_last_of(' ') + 1, text.size());
        pid_t pid = -1;
        std::from_chars(text.data() + begin, text.data() + text.size(), pid);
        return pid;
    }

    [[nodiscard]] bool showsWindow() {
        const auto windows = desktop().screen().managedWindows();
        return std::ranges::any_of(windows, [&](xcb_window_t window) {
            return desktop().screen().processOf(window) == agent().process().pid();
        });
    }
};

TEST_F(LiveBusyStartTest, AGrantAnnouncedLateOpensNoPage) {
    const auto launcherPid = launcher();
    ASSERT_GT(launcherPid, 1);
    ASSERT_EQ(::kill(launcherPid, SIGSTOP), 0);
    const auto later =
        required(desktop().startProcess({"sh", "-c", "sleep 0.5; exec kill -CONT " + std::to_string(launcherPid)}));
    startAgent(); // until it observes the keyboard
    EXPECT_EQ(agent().status().at("permissions").at("accessibility"), true);
    EXPECT_TRUE(holdsFor(1500ms, [&] { return !showsWindow(); }));
    ASSERT_TRUE(desktop().run({agentExecutable()}).succeeded()); // waits until absence can be trusted
    EXPECT_TRUE(waitUntil([&] { return showsWindow(); }));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/permissions/ApplicationLocation.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" char** environ; // POSIX requires the program to declare it

namespace quillane::core {
namespace {

TEST(ApplicationLocation, ABundleIsFoundFromItsExecutable) {
    const auto found = ApplicationLocation::of("/Applications/Quillane.app/Contents/MacOS/quillane", "/home/someone");
    EXPECT_EQ(found.application, "/Applications/Quillane.app");
}

TEST(ApplicationLocation, ABundleElsewhereIsNotInstalled) {
    EXPECT_FALSE(ApplicationLocation::of("/tmp/Quillane.app/Contents/MacOS/quillane", "/home/someone").installed);
}

TEST(ApplicationLocation, ABareExecutableIsItsOwnApplication) {
    const auto found = ApplicationLocation::of("/usr/bin/quillane", "/home/someone");
    EXPECT_EQ(found.application, "/usr/bin/quillane");
    EXPECT_TRUE(found.installed);
}

TEST(RelaunchCommand, OpensABundleByTheSystemsCommand) {
    const auto command = relaunchCommand(4711, "/Applications/Quillane.app");
    EXPECT_EQ(command.executable, "/bin/sh");
    ASSERT_EQ(command.arguments.size(), 5U);
    EXPECT_EQ(command.arguments[0], "-c");
    EXPECT_EQ(command.arguments[1],
              "for n in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do kill -0 \"$1\" 2>/dev/null || exec "
              "/usr/bin/open \"$2\"; sleep 0.25; done");
    EXPECT_EQ(command.arguments[2], "quillane-relaunch");
    EXPECT_EQ(command.arguments[3], "4711");
    EXPECT_EQ(command.arguments[4], "/Applications/Quillane.app");
}

pid_t start(const ProcessCommand& command) {
    std::vector<std::string> words{command.executable};
    words.insert(words.end(), command.arguments.begin(), command.arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    EXPECT_EQ(posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ), 0);
    return pid;
}

TEST(RelaunchCommand, TheScriptStartsAnExecutableOnceTheProcessHasGone) {
    const live::TemporaryFolder folder;
    const auto mark = folder.path() / "started";
    const auto program = folder.file("a program", "#!/bin/sh\n: > '" + mark.string() + "'\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);

    const auto old = start({"/bin/sleep", {"60"}});
    const auto waiting = start(relaunchCommand(old, program));
    usleep(400'000); // the script looks every quarter of a second
    EXPECT_FALSE(std::filesystem::exists(mark));
    kill(old, SIGKILL);
    waitpid(old, nullptr, 0);
    int status = -1;
    EXPECT_EQ(waitpid(waiting, &status, 0), waiting);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::exists(mark));
}

TEST(SettingsAddress, EachPermissionHasItsPage) {
    EXPECT_EQ(settingsAddress(MacPermission::accessibility),
              "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
    EXPECT_EQ(settingsAddress(MacPermission::inputMonitoring),
              "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent");
}

} // namespace
} // namespace quillane::core

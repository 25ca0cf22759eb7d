// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/fixture/LiveDesktopTest.hpp"

#include <csignal>

namespace quillane::live {
namespace {

/// The desktop itself, with real editors and without the agent.
class LiveDesktopItselfTest : public LiveDesktopTest {
protected:
    void expectTypedText(std::vector<std::string> editorCommand) {
        auto editor = desktop().startApplication(std::move(editorCommand));
        ASSERT_TRUE(editor) << editor.error();
        ASSERT_TRUE(waitUntil([&] { return desktop().editorText(editor->pid()) == ""; }));
        desktop().keyboard().type("asd");
        desktop().keyboard().tapWith({Key::leftShift}, Key::a);
        EXPECT_TRUE(waitUntil([&] { return desktop().editorText(editor->pid()) == "asdA"; }))
            << desktop().editorText(editor->pid()).value_or("(no editor)");
        desktop().screen().lockGroup(1);
        desktop().keyboard().type("asd");
        EXPECT_TRUE(waitUntil([&] { return desktop().editorText(editor->pid()) == "asdAשדג"; }))
            << desktop().editorText(editor->pid()).value_or("(no editor)");
        EXPECT_EQ(desktop().screen().group(), 1);
        EXPECT_TRUE(desktop().screen().keysDown().none());
    }
};

TEST_F(LiveDesktopItselfTest, TypesIntoAGtkEditorInBothLayouts) {
    expectTypedText({"mousepad", "--disable-server"});
}

TEST_F(LiveDesktopItselfTest, TypesIntoAQtEditorInBothLayouts) {
    expectTypedText({"featherpad", "--standalone"});
}

TEST_F(LiveDesktopItselfTest, SwitchesBetweenApplications) {
    auto first = desktop().startApplication({"mousepad", "--disable-server"});
    ASSERT_TRUE(first) << first.error();
    auto second = desktop().startApplication({"featherpad", "--standalone"});
    ASSERT_TRUE(second) << second.error();
    EXPECT_TRUE(desktop().bringToFront(first->pid()));
    EXPECT_TRUE(desktop().bringToFront(second->pid()));
}

TEST_F(LiveDesktopItselfTest, TakesScreenshots) {
    const auto file = desktop().home() / "screen.png";
    ASSERT_TRUE(desktop().takeScreenshot(file));
    EXPECT_EQ(readFile(file).substr(1, 3), "PNG");
}

TEST_F(LiveDesktopItselfTest, LoadsAnotherKeyboardMap) {
    const auto before = desktop().screen().keymap();
    ASSERT_TRUE(desktop().setKeyboardMap("us,ara"));
    EXPECT_NE(desktop().screen().keymap(), before);
}

TEST(LiveDesktopEnd, LeavesNoProcessBehind) {
    auto desktop = LiveDesktop::start();
    ASSERT_TRUE(desktop) << desktop.error();
    auto orphan = (*desktop)->startProcess({"sh", "-c", "sleep 1000 & echo $! > ~/orphan; exec sleep 1000"});
    ASSERT_TRUE(orphan) << orphan.error();
    const auto file = (*desktop)->home() / "orphan";
    ASSERT_TRUE(waitUntil([&] { return readFile(file).ends_with('\n'); }));
    const pid_t pid = std::stoi(readFile(file));
    ASSERT_EQ(kill(pid, 0), 0);
    orphan->end();
    desktop->reset();
    EXPECT_NE(kill(pid, 0), 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(ChildProcess, ReportsTheExitCodeAndTheSignal) {
    Command command;
    command.environment = currentEnvironment();
    command.arguments = {"sh", "-c", "echo out; echo err >&2; exit 3"};
    const auto result = runToEnd(command, defaultTimeout);
    EXPECT_EQ(result.exit, (ExitStatus{3, 0}));
    EXPECT_EQ(result.output, "out\n");
    EXPECT_EQ(result.errors, "err\n");

    command.arguments = {"sleep", "1000"};
    auto process = ChildProcess::start(command);
    ASSERT_TRUE(process) << process.error();
    EXPECT_TRUE(process->isRunning());
    process->signal(SIGINT);
    EXPECT_EQ(process->waitForExit(defaultTimeout), (ExitStatus{-1, SIGINT}));
    EXPECT_TRUE(runToEnd(command, std::chrono::milliseconds{50}).timedOut);
}

TEST(ChildProcess, SaysWhenThereIsNoSuchProgram) {
    Command command;
    command.arguments = {"no-such-program-anywhere"};
    const auto process = ChildProcess::start(command);
    ASSERT_FALSE(process);
    EXPECT_EQ(process.error(), "no program no-such-program-anywhere");
}

} // namespace
} // namespace quillane::live

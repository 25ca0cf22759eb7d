// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/history/LiveHistory.hpp"

#include <fstream>
#include <sstream>

namespace quillane::live {
namespace {

/// A terminal emulator and its option to run a command.
struct Terminal {
    const char* name;
    std::vector<std::string> command;
};

void PrintTo(const Terminal& terminal, std::ostream* out) {
    *out << terminal.name;
}

/// Pasting into a program that runs in a terminal and writes what it is given to a file.
class LiveTerminalTest : public LiveHistoryTest, public testing::WithParamInterface<Terminal> {
protected:
    void TearDown() override {
        LiveHistoryTest::TearDown(); // keeps the evidence while everything still runs
        terminal_.reset();
    }

    void startTerminal() {
        auto arguments = GetParam().command;
        arguments.insert(arguments.end(), {"sh", "-c", "touch ~/ready && exec cat >~/given"});
        terminal_ = required(desktop().startApplication(arguments));
        require(waitUntil([&] { return std::filesystem::exists(desktop().home() / "ready"); }),
                "nothing runs in the terminal");
    }

    [[nodiscard]] ChildProcess& terminal() { return *terminal_; }

    [[nodiscard]] std::string given() {
        std::ostringstream text;
        text << std::ifstream(desktop().home() / "given").rdbuf();
        return text.str();
    }

    void expectGiven(const std::string& text) {
        EXPECT_TRUE(waitUntil([&] { return given() == text; })) << "given: " << given();
    }

private:
    std::optional<ChildProcess> terminal_;
};

TEST_P(LiveTerminalTest, AChosenEntryReachesTheProgramInIt) {
    startHistory();
    copy("first line");
    ASSERT_TRUE(hasEntries(1));
    copy("שורה second");
    ASSERT_TRUE(hasEntries(2));
    startTerminal();
    desktop().keyboard().type("a ");
    openPanel();
    desktop().keyboard().tap(Key::enter);
    ASSERT_TRUE(isPanelOpen(false));
    ASSERT_TRUE(desktop().waitUntilInFront(terminal().pid()));
    ASSERT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] { return given().empty(); })) << "no line has ended";
    desktop().keyboard().tap(Key::enter);
    expectGiven("a שורה second\n");
    openPanel();
    desktop().keyboard().tapWith({Key::leftControl}, Key::digit2);
    ASSERT_TRUE(isPanelOpen(false));
    ASSERT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] { return given() == "a שורה second\n"; }));
    desktop().keyboard().tap(Key::enter);
    expectGiven("a שורה second\nfirst line\n");
}

using LiveTerminalWithSearchTest = LiveTerminalTest;

TEST_P(LiveTerminalWithSearchTest, AChosenEntryIsPastedIntoItsSearchField) {
    startHistory();
    copy("needle");
    ASSERT_TRUE(hasEntries(1));
    startTerminal();
    desktop().keyboard().tapWith({Key::leftControl, Key::leftShift}, Key{41}); // F
    ASSERT_TRUE(waitUntil([&] { return desktop().editorText(terminal().pid()) == ""; })) << "no search field";
    openPanel();
    desktop().keyboard().tap(Key::enter);
    EXPECT_TRUE(waitUntil([&] { return desktop().editorText(terminal().pid()) == "needle"; }))
        << desktop().editorText(terminal().pid()).value_or("(no focused field)");
}

const Terminal xfce{"Xfce", {"xfce4-terminal", "--disable-server", "-x"}};
const Terminal xterm{"XTerm", {"xterm", "-u8", "-e"}};

INSTANTIATE_TEST_SUITE_P(In, LiveTerminalWithSearchTest, testing::Values(xfce),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

INSTANTIATE_TEST_SUITE_P(In, LiveTerminalTest, testing::Values(xfce, xterm),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

} // namespace
} // namespace quillane::live

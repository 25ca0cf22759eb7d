// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/TerminalShortcuts.hpp"

#include "fakes/FakeDesktop.hpp"
#include "platform/linux/applications/TerminalFocus.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <thread>

namespace quillane {

namespace {

namespace flags = core::flags;
using terminalShortcuts::pressed;
using terminalShortcuts::styleOf;

constexpr KeyPress paste{.keyCode = 9, .flags = flags::command};

struct StyleCase {
    const char* name;
    ShortcutFocus focus;
    ShortcutStyle expected;
};

void PrintTo(const StyleCase& tested, std::ostream* out) {
    *out << tested.name;
}

class ShortcutStyleOfTest : public ::testing::TestWithParam<StyleCase> {};

TEST_P(ShortcutStyleOfTest, IsThatOfWhatHasTheKeyboard) {
    EXPECT_EQ(styleOf(GetParam().focus), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Focus, ShortcutStyleOfTest,
    ::testing::Values(
        StyleCase{"editor", {"AXTextArea", "", "Mousepad", false}, ShortcutStyle::control},
        StyleCase{"unknown", {"", "", "", false}, ShortcutStyle::control},
        StyleCase{"terminal", {"AXTextArea", "AXTerminal", "Xfce4-terminal", true}, ShortcutStyle::controlShift},
        StyleCase{"terminalInAnEditor", {"AXTextArea", "AXTerminal", "Kate", false}, ShortcutStyle::controlShift},
        StyleCase{"terminalThatSaysNothing", {"", "", "Alacritty", true}, ShortcutStyle::controlShift},
        StyleCase{"terminalThatSaysOnlyWindow", {"AXGroup", "", "kitty", true}, ShortcutStyle::controlShift},
        StyleCase{"searchFieldOfATerminal", {"AXTextField", "", "Xfce4-terminal", true}, ShortcutStyle::control},
        StyleCase{"olderTerminal", {"", "", "XTerm", true}, ShortcutStyle::shiftInsert},
        StyleCase{"classOfAnOlderTerminalThatIsNone", {"", "", "XTerm", false}, ShortcutStyle::control}),
    [](const auto& tested) { return tested.param.name; });

TEST(TerminalShortcuts, CommandIsControlOrControlAndShift) {
    EXPECT_EQ(pressed(ShortcutStyle::control, paste), (KeyPress{9, flags::control}));
    EXPECT_EQ(pressed(ShortcutStyle::controlShift, paste), (KeyPress{9, flags::control | flags::shift}));
    EXPECT_EQ(pressed(ShortcutStyle::control, {9, flags::command | flags::option | flags::shift}),
              (KeyPress{9, flags::control | flags::option | flags::shift}));
}

TEST(TerminalShortcuts, OlderTerminalsKnowNoneButPasting) {
    EXPECT_EQ(pressed(ShortcutStyle::shiftInsert, paste), (KeyPress{114, flags::shift}));
    EXPECT_EQ(pressed(ShortcutStyle::shiftInsert, {8, flags::command}), std::nullopt);
}

TEST(TerminalShortcuts, OtherKeysStayUnchanged) {
    for (const auto style : {ShortcutStyle::control, ShortcutStyle::controlShift, ShortcutStyle::shiftInsert}) {
        EXPECT_EQ(pressed(style, {9, flags::option}), (KeyPress{9, flags::option}));
    }
}

/// An installed terminal and an installed editor.
class TerminalFocusTest : public ::testing::Test {
protected:
    TerminalFocusTest() {
        ::setenv("XDG_DATA_HOME", files_.path().c_str(), 1);
        ::setenv("XDG_DATA_DIRS", "/nowhere", 1);
        const auto folder = files_.path() / "applications";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "term.desktop") << "[Desktop Entry]\nType=Application\nName=T\nExec=term\n"
                                                  "Categories=System;TerminalEmulator;\n";
        installed_ = std::make_shared<InstalledApplications>(desktop_.queue);
        for (int turn = 0; turn < 5000 && !installed_->index().knows("term"); ++turn) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            desktop_.settle();
        }
        EXPECT_TRUE(installed_->index().knows("term"));
    }

    ~TerminalFocusTest() override {
        ::unsetenv("XDG_DATA_HOME");
        ::unsetenv("XDG_DATA_DIRS");
    }

    TerminalFocusTest(const TerminalFocusTest&) = delete;
    TerminalFocusTest& operator=(const TerminalFocusTest&) = delete;

    [[nodiscard]] ShortcutStyle style() {
        return TerminalFocus(desktop_.accessibility, desktop_.workspace, installed_).styleIn(desktop_.frontPid());
    }

    void focusOnTerminal() {
        auto& text = desktop_.accessibility.tree(desktop_.frontPid()).add("AXTextArea").with("AXSubrole", "AXTerminal");
        desktop_.accessibility.focus(desktop_.frontPid(), &text);
    }

    live::TemporaryFolder files_;
    fakes::FakeDesktop desktop_;
    std::shared_ptr<InstalledApplications> installed_; // shared as with a workspace
};

TEST_F(TerminalFocusTest, AnApplicationOfTheCategoryIsOneUnlessAFieldHasTheFocus) {
    desktop_.withFrontApplication("Term");
    EXPECT_EQ(style(), ShortcutStyle::controlShift);
    desktop_.withFocusedTextField();
    EXPECT_EQ(style(), ShortcutStyle::control);
    focusOnTerminal();
    EXPECT_EQ(style(), ShortcutStyle::controlShift);
}

TEST_F(TerminalFocusTest, ATerminalInAnotherApplicationIsOneWhileItHasTheFocus) {
    desktop_.withFrontApplication("Editor").withFocusedTextField("AXTextArea");
    EXPECT_EQ(style(), ShortcutStyle::control);
    focusOnTerminal();
    EXPECT_EQ(style(), ShortcutStyle::controlShift);
}

} // namespace

} // namespace quillane

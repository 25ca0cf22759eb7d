// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveMenu.hpp"

namespace quillane::live {
namespace {

/// The testing page of the settings, opened and used by keys alone.
class LiveTestingPageTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        startAgent();
        require(required(LiveMenu::open(desktop())).choose("Quick test"), "the row of the menu");
        require(desktop().waitUntilInFront(agent().process().pid()), "the settings window is not in front");
        for (int control = 0; control < 30 && !box(); ++control) {
            desktop().keyboard().tap(Key::tab);
            static_cast<void>(waitUntil([&] { return box().has_value(); }, std::chrono::milliseconds{100}));
        }
        require(box().has_value(), "no text box gets the focus");
    }

    [[nodiscard]] std::optional<AccessibleNode> box() {
        return desktop().accessibility().focusedEditor(agent().process().pid());
    }

    /// Where the first character that was typed stands on the screen.
    [[nodiscard]] int firstCharacter() {
        const auto found = box();
        return found ? desktop().accessibility().characterLeft(*found, 0).value_or(-1) : -1;
    }

    void expectTyped(const std::string& text) {
        EXPECT_TRUE(waitUntil([&] { return desktop().editorText(agent().process().pid()) == text; }));
    }
};

TEST_F(LiveTestingPageTest, AChordTurnsTheParagraphOfTheTextBoxAndTurnsItBack) {
    desktop().keyboard().type("abc");
    expectTyped("abc");
    const int left = firstCharacter();
    ASSERT_GT(left, 0);
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    EXPECT_TRUE(waitUntil([&] { return firstCharacter() > left + 200; })) << left << ' ' << firstCharacter();
    desktop().keyboard().chord({Key::leftControl, Key::leftShift});
    EXPECT_TRUE(waitUntil([&] { return firstCharacter() == left; })) << left << ' ' << firstCharacter();
    EXPECT_EQ(agent().status().at("lastDirection").at("count"), 2);
    expectTyped("abc");
}

TEST_F(LiveTestingPageTest, AChordBesideTheTextBoxTurnsNothing) {
    desktop().keyboard().type("abc");
    expectTyped("abc");
    desktop().keyboard().tap(Key::tab);
    ASSERT_TRUE(waitUntil([&] { return !box(); }));
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{400},
                         [&] { return agent().status().at("lastDirection").at("count") == 0; }));
}

} // namespace
} // namespace quillane::live

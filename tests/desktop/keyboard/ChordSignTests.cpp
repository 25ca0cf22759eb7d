// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/fixture/SignWatcher.hpp"

#include <cstdlib>
#include <functional>

namespace quillane::live {
namespace {

constexpr int near = 60; // pixels: half of a sign, and the text cursor is less than a letter from the last one

class LiveChordSignTest : public AgentEditorTest {
protected:
    void chord() { desktop().chordInto(editor().pid(), {Key::leftAlt, Key::leftShift}); }

    /// The left edge of the last letter on the screen.
    [[nodiscard]] std::optional<int> lastLetter(int count) {
        const auto node = desktop().accessibility().focusedEditor(editor().pid());
        return node ? desktop().accessibility().characterLeft(*node, count - 1) : std::nullopt;
    }

    [[nodiscard]] std::optional<ScreenArea> editorArea() {
        const auto active = desktop().screen().activeWindow();
        return active ? areaOf(desktop().screen(), *active) : std::nullopt;
    }

    /// The sign of a chord for which the place holds. An editor that is too busy to say where its cursor is gets
    /// another chord: until then the sign is at the pointer.
    [[nodiscard]] bool signIs(SignWatcher& watcher, const std::function<bool(const ScreenArea&)>& place) {
        return waitUntil([&] {
            const int before = watcher.last() ? watcher.last()->number : 0;
            chord();
            return waitUntil([&] { return watcher.last() && watcher.last()->number > before; }) &&
                   place(watcher.last()->area);
        });
    }
};

QUILLANE_IN_BOTH_EDITORS(LiveChordSignTest);

TEST_P(LiveChordSignTest, NamesTheNewSourceAtTheTextCursorAndGoesAway) {
    startTyping(GetParam(), false);
    desktop().keyboard().type("some letters");
    expectEditorText("some letters");
    const auto letter = lastLetter(12);
    const auto editor = editorArea();
    ASSERT_TRUE(letter && editor);
    desktop().keyboard().movePointer(1270, 790);
    const auto focus = desktop().screen().focusedWindow();
    const auto managed = desktop().screen().managedWindows();
    SignWatcher watcher(desktop().screen(), desktop().display());
    EXPECT_TRUE(signIs(watcher, [&](const ScreenArea& sign) {
        return std::abs(sign.centerX() - *letter) < near && sign.y > editor->y &&
               sign.y < editor->y + editor->height / 2;
    }));
    EXPECT_EQ(desktop().screen().focusedWindow(), focus);
    EXPECT_EQ(desktop().screen().managedWindows(), managed);
    EXPECT_TRUE(waitUntil([&] { return watcher.last()->gone; }));
    expectEditorText("some letters");
}

TEST_P(LiveChordSignTest, IsInTheFieldWhileThatIsEmpty) {
    startTyping(GetParam(), false);
    const auto editor = editorArea();
    ASSERT_TRUE(editor);
    desktop().keyboard().movePointer(1270, 790);
    SignWatcher watcher(desktop().screen(), desktop().display());
    EXPECT_TRUE(signIs(watcher, [&](const ScreenArea& sign) { return sign.y < editor->y + editor->height / 2; }));
}

using LiveChordSignSettingsTest = AgentTest;

TEST_F(LiveChordSignSettingsTest, SwitchedOffNothingAppears) {
    ASSERT_TRUE(writeAgentSettings(desktop(), {{"ChordSignEnabled", "<false/>"}}));
    startTyping(editors().front(), false);
    SignWatcher watcher(desktop().screen(), desktop().display());
    desktop().chordInto(editor().pid(), {Key::leftAlt, Key::leftShift});
    ASSERT_TRUE(agent().waitForStatus(
        [](const auto& status) { return status.at("lastAction") == "Keyboard language: Hebrew"; }));
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{600}, [&] { return !watcher.last(); }));
}

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveBrowserTest.hpp"

namespace quillane::live {
namespace {

/// Debian's Firefox.
class LiveFirefoxTest : public LiveBrowserTest {
protected:
    void startIn(const std::string& focus, const LiveBrowser::FirefoxProfile& profile = {}) {
        startWith([&] { return LiveBrowser::startFirefox(desktop(), focus, profile); });
    }

    void turnThereAndBack(const std::string& right, const std::string& left) {
        turnRight();
        expectDirection(right);
        expectSaid("Applied RTL in Firefox");
        expectNoMenu();
        turnLeft();
        expectDirection(left);
        expectSaid("Applied LTR in Firefox");
        expectNoMenu();
    }
};

TEST_F(LiveFirefoxTest, ChordTurnsTheTextAreaAndTurnsItBack) {
    startIn("area");
    const auto before = state();
    turnThereAndBack("rtl", "ltr");
    EXPECT_EQ(state(), before);
    desktop().keyboard().tap(Key::q);
    expectText("fqst_line/second_line");
}

TEST_F(LiveFirefoxTest, ChordOfTheDirectionThatTheTextHasChangesNothing) {
    startIn("area");
    turnLeft();
    expectSaid("Applied LTR in Firefox");
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] { return state().direction == "ltr"; }));
}

TEST_F(LiveFirefoxTest, ChordTurnsAFieldOfOneLine) {
    startIn("line");
    turnThereAndBack("rtl", "ltr");
}

/// Firefox has no command for one paragraph.
TEST_F(LiveFirefoxTest, ChordTurnsEveryParagraphOfAPageThatIsEdited) {
    startIn("rich");
    turnThereAndBack("rtl,rtl,rtl", "ltr,ltr,ltr");
}

TEST_F(LiveFirefoxTest, EmptyFieldIsLeftAloneBecauseNothingShowsItsDirection) {
    startIn("blank");
    turnRight();
    expectSaid("The editor does not expose the cursor position — direction was not changed");
    expectNoMenu();
}

TEST_F(LiveFirefoxTest, FirefoxWithoutTheCommandSaysHowToTurnItOn) {
    startIn("area", {.hasCommand = false});
    turnRight();
    expectSaid("To change direction in Firefox, set bidi.browser.ui to true in about:config and restart Firefox");
    expectNoMenu();
    EXPECT_EQ(state().direction, "ltr");
    desktop().keyboard().tap(Key::q);
    expectText("fqst_line/second_line");
}

class LiveFirefoxLanguageTest : public LiveFirefoxTest, public testing::WithParamInterface<const char*> {};

TEST_P(LiveFirefoxLanguageTest, ChordTurnsTheTextAreaAndTurnsItBack) {
    startIn("area", {.language = GetParam()});
    turnThereAndBack("rtl", "ltr");
}

INSTANTIATE_TEST_SUITE_P(In, LiveFirefoxLanguageTest, testing::Values("he", "ar"),
                         [](const auto& one) { return std::string(one.param); });

class LiveFirefoxWithoutEditorTest : public LiveFirefoxTest, public testing::WithParamInterface<const char*> {};

TEST_P(LiveFirefoxWithoutEditorTest, AsksForAPlaceAndOpensNoMenu) {
    startIn(GetParam());
    turnRight();
    expectSaid("Place the cursor in an editable text field on the website");
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] { return !browser_->hasOpenMenu(); }));
    EXPECT_EQ(state().direction, "ltr");
}

INSTANTIATE_TEST_SUITE_P(Focus, LiveFirefoxWithoutEditorTest, testing::Values("secret", "fixed", "none"),
                         [](const auto& one) { return std::string(one.param); });

} // namespace
} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/direction/LiveBrowser.hpp"
#include "desktop/direction/LiveWriter.hpp"

#include <gmock/gmock.h>

namespace quillane::live {
namespace {

/// Direction chords in applications that speak another language than the agent, which speaks English.
class LiveLanguageTest : public AgentTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
    }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }
};

/// Chromium shows each label behind an invisible mark.
class LiveChromiumLanguageTest : public LiveLanguageTest {
protected:
    void TearDown() override {
        AgentTest::TearDown();
        browser_.reset();
    }

    void open(const std::string& focus) {
        browser_.emplace(required(LiveBrowser::start(desktop(), focus, LiveBrowser::Tree::atOnce, GetParam())));
        require(
            agent().waitForStatus([](const auto& status) { return status.at("monitorRunning").template get<bool>(); }),
            "the agent observes the keyboard");
        ASSERT_TRUE(state().language.starts_with(GetParam())) << state().language;
    }

    [[nodiscard]] PageState state() const { return browser_->state().value_or(PageState()); }

    void expectDirection(const std::string& direction) {
        EXPECT_TRUE(waitUntil([&] { return state().direction == direction; })) << state().direction;
    }

    void expectNoMenu() {
        EXPECT_TRUE(waitUntil([&] { return !browser_->hasOpenMenu(); }));
    }

    std::optional<LiveBrowser> browser_;
};

TEST_P(LiveChromiumLanguageTest, AChordTurnsTheParagraphAtTheCursorAndTurnsItBack) {
    open("rich");
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("ltr,rtl,ltr");
    expectNoMenu();
    turnLeft();
    expectSaid("Applied LTR in Chromium");
    expectDirection("ltr,ltr,ltr");
    expectNoMenu();
}

TEST_P(LiveChromiumLanguageTest, AChordTurnsTheSelectedParagraphsAndTurnsThemBack) {
    open("rich");
    desktop().keyboard().tapWith({Key::leftShift}, Key::down);
    ASSERT_TRUE(waitUntil([&] { return state().selection != "0"; }));
    const auto before = state();
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("ltr,rtl,rtl");
    expectNoMenu();
    EXPECT_EQ(state().selection, before.selection);
    turnLeft();
    expectSaid("Applied LTR in Chromium");
    expectDirection("ltr,ltr,ltr");
    expectNoMenu();
    EXPECT_EQ(state(), before);
}

TEST_P(LiveChromiumLanguageTest, AChordTurnsATextAreaAndKeepsItsSelection) {
    open("area");
    const auto before = state();
    turnRight();
    expectSaid("Applied RTL in Chromium");
    expectDirection("rtl");
    expectNoMenu();
    turnLeft();
    expectDirection("ltr");
    expectNoMenu();
    EXPECT_EQ(state(), before);
}

class LiveWriterLanguageTest : public LiveLanguageTest {
protected:
    void SetUp() override {
        LiveLanguageTest::SetUp();
        writer_.emplace(required(LiveWriter::start(desktop(), GetParam())));
        const std::string fileMenu = std::string(GetParam()) == "he" ? "קובץ" : "ملف";
        const auto& tree = desktop().accessibility();
        const auto writer = tree.application(writer_->pid());
        ASSERT_TRUE(writer && tree.find(*writer, [&](const auto& node) { return node.name == fileMenu; }));
    }

    void TearDown() override {
        AgentTest::TearDown();
        writer_.reset();
    }

    std::optional<LiveWriter> writer_;
};

TEST_P(LiveWriterLanguageTest, AChordTurnsTheParagraphAtTheCursorAndTurnsItBack) {
    desktop().keyboard().tap(Key::down);
    ASSERT_TRUE(waitUntil([&] { return writer_->paragraph() == "two"; }));
    turnRight();
    expectSaid("Applied RTL in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one lr-tb", "two rl-tb", "three lr-tb"));
    turnLeft();
    expectSaid("Applied LTR in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one lr-tb", "two lr-tb", "three lr-tb"));
}

TEST_P(LiveWriterLanguageTest, AChordTurnsTheSelectedParagraphsAndTurnsThemBack) {
    desktop().keyboard().tapWith({Key::leftShift}, Key::down);
    ASSERT_TRUE(waitUntil([&] { return writer_->paragraph() == "two"; }));
    turnRight();
    expectSaid("Applied RTL in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one rl-tb", "two rl-tb", "three lr-tb"));
    turnLeft();
    expectSaid("Applied LTR in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one lr-tb", "two lr-tb", "three lr-tb"));
}

std::string nameOf(const testing::TestParamInfo<const char*>& one) {
    return std::string(one.param) == "he" ? "Hebrew" : "Arabic";
}

INSTANTIATE_TEST_SUITE_P(Languages, LiveChromiumLanguageTest, testing::Values("he", "ar"), nameOf);
INSTANTIATE_TEST_SUITE_P(Languages, LiveWriterLanguageTest, testing::Values("he", "ar"), nameOf);

} // namespace
} // namespace quillane::live

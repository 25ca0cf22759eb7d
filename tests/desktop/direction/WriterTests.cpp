// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/direction/LiveWriter.hpp"

#include <gmock/gmock.h>

namespace quillane::live {
namespace {

/// Direction chords in LibreOffice Writer, with the interface of the agent in English.
class LiveWriterDirectionTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
        writer_.emplace(required(LiveWriter::start(desktop())));
    }

    void TearDown() override {
        AgentTest::TearDown();
        writer_.reset();
    }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    void goDownTo(const std::string& paragraph) {
        desktop().keyboard().tap(Key::down);
        ASSERT_TRUE(waitUntil([&] { return writer_->paragraph() == paragraph; }));
    }

    std::optional<LiveWriter> writer_;
};

TEST_F(LiveWriterDirectionTest, AChordTurnsTheParagraphAtTheCursorAndNoOther) {
    goDownTo("two");
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    expectSaid("Applied RTL in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one lr-tb", "two rl-tb", "three lr-tb"));
    EXPECT_EQ(writer_->paragraph(), "two");
    desktop().keyboard().chord({Key::leftControl, Key::leftShift});
    expectSaid("Applied LTR in LibreOffice Writer");
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one lr-tb", "two lr-tb", "three lr-tb"));
    desktop().keyboard().type("xy");
    EXPECT_TRUE(waitUntil([&] { return writer_->paragraph() == "xytwo"; }))
        << writer_->paragraph().value_or("(no paragraph has the focus)");
}

TEST_F(LiveWriterDirectionTest, AChordOfTheDirectionThatTheParagraphHasIsAppliedToo) {
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    expectSaid("Applied RTL in LibreOffice Writer");
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("lastDirection").at("count") == 2; }));
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds{500}, [&] {
        return agent().status().at("lastAction") == "Applied RTL in LibreOffice Writer";
    })) << agent().status();
    EXPECT_THAT(writer_->savedDirections(), testing::ElementsAre("one rl-tb", "two lr-tb", "three lr-tb"));
}

TEST_F(LiveWriterDirectionTest, TheFieldOfAToolbarIsNotATarget) {
    desktop().keyboard().chord({Key::leftControl, Key::f});
    ASSERT_TRUE(waitUntil([&] { return writer_->paragraph() != "one"; }));
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    expectSaid("Place the cursor in a paragraph in LibreOffice Writer");
}

} // namespace
} // namespace quillane::live

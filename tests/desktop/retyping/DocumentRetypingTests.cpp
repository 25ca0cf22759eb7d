// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/direction/LiveBrowserTest.hpp"
#include "desktop/direction/LiveWriter.hpp"

namespace quillane::live {
namespace {

/// A browser, whose text other programs can read and not write.
class LiveBrowserRetypingTest : public LiveBrowserTest {
protected:
    void startIn(const std::string& focus) {
        startWith([&] { return LiveBrowser::start(desktop(), focus); });
        ASSERT_TRUE(agent().bringToFront(browser_->pid()));
        ASSERT_TRUE(agent().useGroup(0, false));
    }
};

TEST_F(LiveBrowserRetypingTest, TextThatCannotBeWrittenIsLeftAndThatIsSaid) {
    startIn("area");
    desktop().keyboard().tap(Key::end);
    desktop().keyboard().type(" akuo");
    expectText("first_line_akuo/second_line");
    desktop().keyboard().chord({Key::leftAlt, Key::rightShift});
    EXPECT_TRUE(agent().waitForStatus([](const auto& status) {
        return status.at("lastAction").template get<std::string>().find("does not let") != std::string::npos;
    })) << agent().status();
    EXPECT_EQ(state().text, "first_line_akuo/second_line");
    EXPECT_EQ(agent().status().at("inputSource").at("isRTL"), false);
}

/// LibreOffice Writer.
class LiveWriterRetypingTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        startAgent();
        writer_.emplace(required(LiveWriter::start(desktop())));
        ASSERT_TRUE(agent().bringToFront(writer_->pid()));
        ASSERT_TRUE(agent().useGroup(0, false));
    }

    void TearDown() override {
        AgentTest::TearDown();
        writer_.reset();
    }

    void chord() { desktop().keyboard().chord({Key::leftAlt, Key::rightShift}); }

    void expectSource(bool isRightToLeft) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) {
            return status.at("inputSource").at("isRTL") == isRightToLeft;
        })) << agent().status();
    }

    void expectParagraph(const std::string& text) {
        EXPECT_TRUE(waitUntil([&] { return writer_->paragraph() == text; }))
            << "expected: " << text << "\nin the document: " << writer_->paragraph().value_or("(no paragraph)");
    }

    std::optional<LiveWriter> writer_;
};

TEST_F(LiveWriterRetypingTest, LastWordOfAParagraphIsFixed) {
    desktop().keyboard().tap(Key::down);
    expectParagraph("two");
    desktop().keyboard().tap(Key::end);
    desktop().keyboard().type(" vhuo akuo");
    expectParagraph("two vhuo akuo");
    chord();
    expectParagraph("two vhuo שלום");
    expectSource(true);
    desktop().keyboard().type("a");
    expectParagraph("two vhuo שלוםש");
}

TEST_F(LiveWriterRetypingTest, SelectionIsFixedAndStaysSelected) {
    desktop().keyboard().tap(Key::down);
    expectParagraph("two");
    desktop().keyboard().chord({Key::leftShift, Key::end});
    chord();
    expectParagraph("א'ם");
    expectSource(true);
    desktop().keyboard().type("a");
    expectParagraph("ש");
}

} // namespace
} // namespace quillane::live

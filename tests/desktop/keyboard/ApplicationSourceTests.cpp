// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds settled{400}; // longer than the agent takes to select a source

/// Two editors, between which the user goes back and forth.
class LiveApplicationSourceTest : public AgentTest {
protected:
    void start(const std::string& enabled, const std::string& fixed = {}) {
        require(writeAgentSettings(desktop(), {{"ApplicationSourcesEnabled", enabled},
                                               {"ApplicationSourcesFixed", "<dict>" + fixed + "</dict>"}}),
                "the settings");
        startTyping(editors().front(), false);
        other_.emplace(required(desktop().startApplication(editors().back().command)));
        require(agent().bringToFront(other_->pid()), "the other editor is in front");
    }

    void goTo(pid_t pid) { ASSERT_TRUE(agent().bringToFront(pid)); }

    [[nodiscard]] pid_t first() { return editor().pid(); }

    [[nodiscard]] pid_t second() { return other_->pid(); }

    [[nodiscard]] bool reaches(int group) {
        return waitUntil([&] { return desktop().screen().group() == group; });
    }

    void TearDown() override {
        AgentTest::TearDown();
        other_.reset();
    }

private:
    std::optional<ChildProcess> other_;
};

TEST_F(LiveApplicationSourceTest, EachEditorGetsItsSourceBack) {
    start("<true/>");
    goTo(first());
    ASSERT_TRUE(agent().useGroup(1, true));
    goTo(second());
    ASSERT_TRUE(reaches(0)); // which it was first seen with
    goTo(first());
    ASSERT_TRUE(reaches(1));
    desktop().keyboard().type("asd");
    expectEditorText("שדג");
    goTo(second());
    EXPECT_TRUE(reaches(0));
}

TEST_F(LiveApplicationSourceTest, WhileAKeyIsDownTheSourceStays) {
    start("<true/>");
    goTo(first());
    ASSERT_TRUE(agent().useGroup(1, true));
    desktop().keyboard().press(Key::leftAlt);
    goTo(second());
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 1; }));
    desktop().keyboard().release(Key::leftAlt);
    EXPECT_TRUE(reaches(0));
}

TEST_F(LiveApplicationSourceTest, SwitchedOffTheSourceStays) {
    start("<false/>");
    goTo(first());
    ASSERT_TRUE(agent().useGroup(1, true));
    goTo(second());
    EXPECT_TRUE(holdsFor(settled, [&] { return desktop().screen().group() == 1; }));
}

} // namespace
} // namespace quillane::live

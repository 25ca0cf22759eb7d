// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/agent/AgentTest.hpp"
#include "desktop/direction/LiveBrowser.hpp"

#include <optional>
#include <string>

namespace quillane::live {

/// Direction chords in a browser, with the interface of the agent in English.
class LiveBrowserTest : public AgentTest {
protected:
    void TearDown() override {
        AgentTest::TearDown();
        browser_.reset();
    }

    /// The agent starts, and then the browser.
    template <typename Start>
    void startWith(Start start) {
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
        browser_.emplace(required(start()));
        require(
            agent().waitForStatus([](const auto& status) { return status.at("monitorRunning").template get<bool>(); }),
            "the agent observes the keyboard");
    }

    [[nodiscard]] PageState state() const { return browser_->state().value_or(PageState()); }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    void expectDirection(const std::string& direction) {
        EXPECT_TRUE(waitUntil([&] { return state().direction == direction; })) << state().direction;
    }

    void expectNoMenu() {
        EXPECT_TRUE(waitUntil([&] { return !browser_->hasOpenMenu(); }));
    }

    void expectText(const std::string& text) {
        EXPECT_TRUE(waitUntil([&] { return state().text == text; })) << state().text;
    }

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }

    std::optional<LiveBrowser> browser_;
};

} // namespace quillane::live

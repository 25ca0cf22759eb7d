// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowList.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace quillane::testing {

/// What every WindowList promises. There may be windows of other programs. The driver is constructed for each test and
/// has:
///
///     WindowList& list();
///     pid_t open(const core::ScreenRect& content); // a program with one ordinary window there, in front of the others
///     void close(pid_t);                           // its window goes
///     bool waitUntil(std::function<bool()>);       // lets the world go on; false when it takes too long
template <typename Driver>
class WindowListContract : public ::testing::Test {
protected:
    using Windows = std::vector<OnScreenWindow>;

    [[nodiscard]] Windows read() {
        std::optional<Windows> answer;
        int answers = 0;
        driver.list().read([&](const Windows& windows) {
            answer = windows;
            ++answers;
        });
        EXPECT_TRUE(driver.waitUntil([&] { return answer.has_value(); }));
        EXPECT_EQ(answers, 1);
        return answer.value_or(Windows{});
    }

    [[nodiscard]] pid_t open(const core::ScreenRect& content) {
        opened.push_back(driver.open(content));
        return opened.back();
    }

    /// The opened programs with visible windows, from front to back.
    [[nodiscard]] std::vector<pid_t> owners() {
        std::vector<pid_t> result;
        for (const auto& window : read()) {
            if (std::ranges::find(opened, window.pid) != opened.end()) {
                result.push_back(window.pid);
            }
        }
        return result;
    }

    Driver driver;
    std::vector<pid_t> opened;
};

TYPED_TEST_SUITE_P(WindowListContract);

TYPED_TEST_P(WindowListContract, ReportsOwnerLayerAndBounds) {
    const auto pid = this->open({120, 90, 640, 480});
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->owners() == std::vector{pid}; }));
    const auto windows = this->read();
    const auto window = *std::ranges::find(windows, pid, &OnScreenWindow::pid);
    EXPECT_EQ(window.layer, 0);
    // The title bar and the frame belong to it.
    EXPECT_NEAR(window.bounds.x, 120, 40);
    EXPECT_NEAR(window.bounds.y, 90, 60);
    EXPECT_GE(window.bounds.width, 640);
    EXPECT_LE(window.bounds.width, 680);
    EXPECT_GE(window.bounds.height, 480);
    EXPECT_LE(window.bounds.height, 540);
}

TYPED_TEST_P(WindowListContract, TheFrontWindowIsFirst) {
    const auto first = this->open({50, 50, 500, 400});
    const auto second = this->open({80, 80, 500, 400});
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->owners() == std::vector{second, first}; }));
}

TYPED_TEST_P(WindowListContract, AWindowThatIsGoneIsNotListed) {
    const auto first = this->open({50, 50, 500, 400});
    const auto second = this->open({80, 80, 500, 400});
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->owners().size() == 2; }));
    this->driver.close(second);
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->owners() == std::vector{first}; }));
}

REGISTER_TYPED_TEST_SUITE_P(WindowListContract, ReportsOwnerLayerAndBounds, TheFrontWindowIsFirst,
                            AWindowThatIsGoneIsNotListed);

} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationMenu.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane::testing {

/// What every ApplicationMenu promises. The driver is constructed for each test, with a window of the program in front,
/// and has:
///
///     std::unique_ptr<ApplicationMenu>& menu();
///     void press(char key);                    // with Command (Control on Linux), in the window
///     bool isWindowOpen();
///     std::optional<LayoutDirection> direction();   // that of the program's menus; none where nothing is drawn
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class ApplicationMenuContract : public ::testing::Test {
protected:
    [[nodiscard]] static ApplicationMenuRow row(std::string title, std::string key, std::function<void()> action,
                                                bool enabled = true) {
        ApplicationMenuRow result;
        result.row.title = std::move(title);
        result.row.keyEquivalent = std::move(key);
        result.row.enabled = enabled;
        result.row.action = std::move(action);
        return result;
    }

    [[nodiscard]] static ApplicationMenuRow closeRow() {
        auto result = row("Close", "", {});
        result.standard = StandardCommand::close;
        return result;
    }

    void install(std::vector<ApplicationMenuRow> rows, LayoutDirection direction = LayoutDirection::leftToRight) {
        std::vector<ApplicationSubmenu> menus(2);
        menus[0] = {.role = ApplicationSubmenu::Role::application, .title = "Quillane", .rows = std::move(rows)};
        menus[1] = {.role = ApplicationSubmenu::Role::windows, .title = "Window", .rows = {closeRow()}};
        driver.menu()->install(std::move(menus), direction);
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(ApplicationMenuContract);

TYPED_TEST_P(ApplicationMenuContract, AKeyChoosesItsRow) {
    int settings = 0;
    int quit = 0;
    this->install({this->row("Settings", ",", [&] { ++settings; }), this->row("Quit", "q", [&] { ++quit; })});
    this->driver.press(',');
    EXPECT_TRUE(this->driver.waitUntil([&] { return settings == 1; }));
    EXPECT_EQ(quit, 0);
    this->driver.press('q');
    EXPECT_TRUE(this->driver.waitUntil([&] { return quit == 1; }));
    EXPECT_EQ(settings, 1);
    EXPECT_TRUE(this->driver.isWindowOpen());
}

TYPED_TEST_P(ApplicationMenuContract, ARowThatIsDisabledIsNotChosen) {
    int disabled = 0;
    int enabled = 0;
    this->install({this->row(
                       "Check", "u", [&] { ++disabled; }, false),
                   this->row("Quit", "q", [&] { ++enabled; })});
    this->driver.press('u');
    this->driver.press('q');
    EXPECT_TRUE(this->driver.waitUntil([&] { return enabled == 1; }));
    EXPECT_EQ(disabled, 0);
}

TYPED_TEST_P(ApplicationMenuContract, ANewMenuReplacesTheOldOne) {
    int before = 0;
    int after = 0;
    this->install({this->row("Settings", ",", [&] { ++before; }), this->row("Share", "o", [&] { ++before; })});
    this->install({this->row("Settings", ",", [&] { ++after; })}, LayoutDirection::rightToLeft);
    this->driver.press('o');
    this->driver.press(',');
    EXPECT_TRUE(this->driver.waitUntil([&] { return after == 1; }));
    EXPECT_EQ(before, 0);
    const std::optional<LayoutDirection> shown = this->driver.direction();
    EXPECT_EQ(shown.value_or(LayoutDirection::rightToLeft), LayoutDirection::rightToLeft);
    this->install({});
    const std::optional<LayoutDirection> shownThen = this->driver.direction();
    EXPECT_EQ(shownThen.value_or(LayoutDirection::leftToRight), LayoutDirection::leftToRight);
}

TYPED_TEST_P(ApplicationMenuContract, AnActionMayInstallAnotherMenu) {
    int chosen = 0;
    this->install({this->row("Language", "l", [&] {
        ++chosen;
        this->install({this->row("Language", "l", [&] { chosen += 10; })});
    })});
    this->driver.press('l');
    EXPECT_TRUE(this->driver.waitUntil([&] { return chosen == 1; }));
    this->driver.press('l');
    EXPECT_TRUE(this->driver.waitUntil([&] { return chosen == 11; }));
}

TYPED_TEST_P(ApplicationMenuContract, TheCommandToCloseClosesTheWindow) {
    this->install({});
    EXPECT_TRUE(this->driver.isWindowOpen());
    this->driver.press('w');
    EXPECT_TRUE(this->driver.waitUntil([&] { return !this->driver.isWindowOpen(); }));
}

TYPED_TEST_P(ApplicationMenuContract, NothingIsChosenAfterItsEnd) {
    int chosen = 0;
    this->install({this->row("Settings", ",", [&] { ++chosen; })});
    this->driver.menu().reset();
    this->driver.press(',');
    this->driver.press('w');
    int turns = 0;
    EXPECT_TRUE(this->driver.waitUntil([&] { return ++turns > 20; }));
    EXPECT_EQ(chosen, 0);
    EXPECT_TRUE(this->driver.isWindowOpen());
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationMenuContract, AKeyChoosesItsRow, ARowThatIsDisabledIsNotChosen,
                            ANewMenuReplacesTheOldOne, AnActionMayInstallAnotherMenu, TheCommandToCloseClosesTheWindow,
                            NothingIsChosenAfterItsEnd);

} // namespace quillane::testing

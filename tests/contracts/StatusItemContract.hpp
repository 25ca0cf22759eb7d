// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillane::testing {

/// What every StatusItem promises. The driver is constructed for each test and has:
///
///     StatusItem& item();
///     std::vector<std::string> titles();        // of the rows that are shown, "" for a separator
///     bool isChecked(std::string title);
///     void choose(std::string title);           // as the user does; nothing when the row cannot be chosen
template <typename Driver>
class StatusItemContract : public ::testing::Test {
protected:
    static MenuRow row(
        std::string title, std::function<void()> action = [] {}) {
        MenuRow result;
        result.title = std::move(title);
        result.action = std::move(action);
        return result;
    }

    static MenuRow separator() {
        MenuRow result;
        result.kind = MenuRow::Kind::separator;
        return result;
    }

    void set(std::vector<MenuRow> rows) { driver.item().setMenu(std::move(rows), LayoutDirection::leftToRight); }

    Driver driver;
};

TYPED_TEST_SUITE_P(StatusItemContract);

TYPED_TEST_P(StatusItemContract, ShowsTheRowsInOrder) {
    this->set({this->row("One"), this->separator(), this->row("Two")});
    EXPECT_EQ(this->driver.titles(), (std::vector<std::string>{"One", "", "Two"}));
}

TYPED_TEST_P(StatusItemContract, LaterRowsTakeThePlaceOfEarlierOnes) {
    this->set({this->row("One"), this->separator(), this->row("Two")});
    this->set({this->row("Uno")});
    EXPECT_EQ(this->driver.titles(), std::vector<std::string>{"Uno"});
}

TYPED_TEST_P(StatusItemContract, AChosenRowRunsItsLatestActionOnce) {
    int first = 0;
    int second = 0;
    this->set({this->row("Row", [&] { ++first; })});
    this->set({this->row("Row", [&] { ++second; })});
    this->driver.choose("Row");
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TYPED_TEST_P(StatusItemContract, ADisabledRowAndAHeaderCannotBeChosen) {
    int runs = 0;
    auto disabled = this->row("Disabled", [&] { ++runs; });
    disabled.enabled = false;
    auto header = this->row("Header", [&] { ++runs; });
    header.kind = MenuRow::Kind::header;
    header.enabled = false;
    this->set({header, disabled});
    this->driver.choose("Disabled");
    this->driver.choose("Header");
    EXPECT_EQ(runs, 0);
}

TYPED_TEST_P(StatusItemContract, ShowsCheckMarks) {
    auto on = this->row("On");
    on.checkable = on.checked = true;
    auto off = this->row("Off");
    off.checkable = true;
    this->set({on, off});
    EXPECT_TRUE(this->driver.isChecked("On"));
    EXPECT_FALSE(this->driver.isChecked("Off"));
}

TYPED_TEST_P(StatusItemContract, AnActionMayReplaceTheRows) {
    this->set({this->row("Before", [this] { this->set({this->separator(), this->row("After")}); })});
    this->driver.choose("Before");
    EXPECT_EQ(this->driver.titles(), (std::vector<std::string>{"", "After"}));
}

/// What a status item promises of notices that nobody shows. macOS asks the user first, so a person tries it there. The
/// driver also has:
///
///     void refuseNotices();                     // from now on
///     void waitForAnswers();                    // until what was asked of the desktop has been answered
template <typename Driver>
class StatusItemNoticeContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(StatusItemNoticeContract);

TYPED_TEST_P(StatusItemNoticeContract, SaysOnceAndLaterThatNobodyShowsIt) {
    this->driver.refuseNotices();
    int failures = 0;
    this->driver.item().notify("Title", "Text", [&] { ++failures; });
    this->driver.item().notify("Title", "Text", nullptr);
    EXPECT_EQ(failures, 0);
    this->driver.waitForAnswers();
    EXPECT_EQ(failures, 1);
}

REGISTER_TYPED_TEST_SUITE_P(StatusItemNoticeContract, SaysOnceAndLaterThatNobodyShowsIt);

REGISTER_TYPED_TEST_SUITE_P(StatusItemContract, ShowsTheRowsInOrder, LaterRowsTakeThePlaceOfEarlierOnes,
                            AChosenRowRunsItsLatestActionOnce, ADisabledRowAndAHeaderCannotBeChosen, ShowsCheckMarks,
                            AnActionMayReplaceTheRows);

} // namespace quillane::testing

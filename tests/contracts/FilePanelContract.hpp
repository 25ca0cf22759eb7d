// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FilePanel.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane::testing {

/// What every FilePanel promises. The driver is constructed for each test and has:
///
///     FilePanel& panel();
///     bool isOpen();
///     std::filesystem::path file();   // one that exists
///     void confirm(path); void cancel();   // as the user does
template <typename Driver>
class FilePanelContract : public ::testing::Test {
protected:
    void choose(const std::string& title = "Title") {
        driver.panel().chooseFile(
            {.title = title, .message = "Message", .prompt = "Prompt"},
            [this](const std::filesystem::path& path) { chosen.push_back(path); }, nullptr);
    }

    Driver driver;
    std::vector<std::filesystem::path> chosen;
};

TYPED_TEST_SUITE_P(FilePanelContract);

TYPED_TEST_P(FilePanelContract, TheChosenFileIsReportedOnce) {
    EXPECT_FALSE(this->driver.isOpen());
    this->choose();
    EXPECT_TRUE(this->driver.isOpen());
    EXPECT_TRUE(this->chosen.empty());
    this->driver.confirm(this->driver.file());
    EXPECT_EQ(this->chosen, std::vector{this->driver.file()});
    EXPECT_FALSE(this->driver.isOpen());
}

TYPED_TEST_P(FilePanelContract, CancellingCallsNothingAndThePanelOpensAgain) {
    this->choose();
    this->driver.cancel();
    EXPECT_FALSE(this->driver.isOpen());
    EXPECT_TRUE(this->chosen.empty());
    this->choose();
    EXPECT_TRUE(this->driver.isOpen());
    this->driver.confirm(this->driver.file());
    EXPECT_EQ(this->chosen.size(), 1U);
}

TYPED_TEST_P(FilePanelContract, AnOpenPanelKeepsItsCallback) {
    this->choose();
    bool second = false;
    this->driver.panel().chooseFile(
        {}, [&](const std::filesystem::path&) { second = true; }, nullptr);
    this->driver.confirm(this->driver.file());
    EXPECT_EQ(this->chosen.size(), 1U);
    EXPECT_FALSE(second);
}

TYPED_TEST_P(FilePanelContract, OtherTextsNeitherOpenNorCloseThePanel) {
    const FilePanel::Texts texts{.title = "כותרת", .message = "הודעה", .prompt = "בחירה", .language = {}};
    this->driver.panel().setTexts(texts);
    EXPECT_FALSE(this->driver.isOpen());
    this->choose();
    this->driver.panel().setTexts(texts);
    EXPECT_TRUE(this->driver.isOpen());
    this->driver.confirm(this->driver.file());
    EXPECT_EQ(this->chosen, std::vector{this->driver.file()});
}

REGISTER_TYPED_TEST_SUITE_P(FilePanelContract, TheChosenFileIsReportedOnce, CancellingCallsNothingAndThePanelOpensAgain,
                            AnOpenPanelKeepsItsCallback, OtherTextsNeitherOpenNorCloseThePanel);

} // namespace quillane::testing

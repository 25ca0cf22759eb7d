// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ServicesMenu.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every ServicesMenu promises that other programs can see. The driver is constructed for each test and has:
///
///     ServicesMenu& menu();
///     bool isOffered();
///     std::optional<std::string> choose(std::vector<std::string> urls);   // another program; the error it is told
template <typename Driver>
class ServicesMenuContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(ServicesMenuContract);

TYPED_TEST_P(ServicesMenuContract, TheSelectionArrivesInItsOrder) {
    std::vector<std::string> shared;
    this->driver.menu().provideShare([&](const std::vector<std::string>& urls) {
        shared = urls;
        return std::nullopt;
    });
    EXPECT_TRUE(this->driver.isOffered());
    const std::vector<std::string> selection{"file:///tmp/b.txt", "file:///tmp/a%20b.txt"};
    EXPECT_EQ(this->driver.choose(selection), std::nullopt);
    EXPECT_EQ(shared, selection);
}

TYPED_TEST_P(ServicesMenuContract, ARefusalReachesTheOtherProgram) {
    this->driver.menu().provideShare([](const auto&) { return std::optional<std::string>("Not this one"); });
    EXPECT_EQ(this->driver.choose({"file:///tmp/a.txt"}), "Not this one");
}

TYPED_TEST_P(ServicesMenuContract, TheNewestProviderAnswersAndAnEmptyOneEndsIt) {
    int first = 0;
    int second = 0;
    this->driver.menu().provideShare([&](const auto&) {
        ++first;
        return std::nullopt;
    });
    this->driver.menu().provideShare([&](const auto&) {
        ++second;
        return std::nullopt;
    });
    this->driver.choose({"file:///tmp/a.txt"});
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    this->driver.menu().provideShare(nullptr);
    EXPECT_FALSE(this->driver.isOffered());
}

REGISTER_TYPED_TEST_SUITE_P(ServicesMenuContract, TheSelectionArrivesInItsOrder, ARefusalReachesTheOtherProgram,
                            TheNewestProviderAnswersAndAnEmptyOneEndsIt);

} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SystemSymbols.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillane::testing {

/// What every SystemSymbols promises. The driver is constructed for each test and has `SystemSymbols& symbols();`.
template <typename Driver>
class SystemSymbolsContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(SystemSymbolsContract);

TYPED_TEST_P(SystemSymbolsContract, ASymbolFillsItsSquareInPart) {
    for (const int pixels : {16, 48, 96}) {
        const auto image = this->driver.symbols().image("icloud.and.arrow.up", pixels);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->width, pixels);
        EXPECT_EQ(image->height, pixels);
        ASSERT_EQ(image->coverage.size(), static_cast<std::size_t>(pixels * pixels));
        EXPECT_TRUE(std::ranges::any_of(image->coverage, [](std::byte value) { return value > std::byte{200}; }));
        EXPECT_TRUE(std::ranges::any_of(image->coverage, [](std::byte value) { return value == std::byte{0}; }));
    }
}

TYPED_TEST_P(SystemSymbolsContract, TheSameNameIsTheSameImage) {
    const auto globe = this->driver.symbols().image("globe", 32);
    EXPECT_TRUE(globe);
    EXPECT_EQ(globe, this->driver.symbols().image("globe", 32));
}

TYPED_TEST_P(SystemSymbolsContract, UnknownNamesAndSidesBelowOneHaveNone) {
    EXPECT_FALSE(this->driver.symbols().image("no.such.symbol", 16));
    EXPECT_FALSE(this->driver.symbols().image("", 16));
    EXPECT_FALSE(this->driver.symbols().image("../artwork/application", 16));
    EXPECT_FALSE(this->driver.symbols().image("globe", 0));
    EXPECT_FALSE(this->driver.symbols().image("globe", -3));
}

REGISTER_TYPED_TEST_SUITE_P(SystemSymbolsContract, ASymbolFillsItsSquareInPart, TheSameNameIsTheSameImage,
                            UnknownNamesAndSidesBelowOneHaveNone);

} // namespace quillane::testing

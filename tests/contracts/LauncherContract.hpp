// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Launcher.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every Launcher promises. The driver is constructed for each test and has:
///
///     Launcher& launcher();
///     core::ProcessCommand command(std::string word);   // leaves a trace of the word
///     core::ProcessCommand impossible();                // a program that does not exist
///     bool hasRun(std::string word);                    // waits for the trace
template <typename Driver>
class LauncherContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(LauncherContract);

TYPED_TEST_P(LauncherContract, AProgramRunsWithItsArgumentsAsTheyAre) {
    const std::string word = "it's \"a word\" with $HOME; שלום";
    EXPECT_TRUE(this->driver.launcher().launch(this->driver.command(word)));
    EXPECT_TRUE(this->driver.hasRun(word));
}

TYPED_TEST_P(LauncherContract, AMissingProgramIsReported) {
    EXPECT_FALSE(this->driver.launcher().launch(this->driver.impossible()));
}

REGISTER_TYPED_TEST_SUITE_P(LauncherContract, AProgramRunsWithItsArgumentsAsTheyAre, AMissingProgramIsReported);

} // namespace quillane::testing

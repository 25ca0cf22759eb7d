// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace quillane {
namespace {

/// What `failed_tests` of scripts/lib/tests.sh makes of the output of ctest.
std::string failedTests(const std::string& output) {
    const live::TemporaryFolder files;
    const auto log = files.file("log", output);
    const auto names = files.path() / "names";
    const auto command = "cd '" QUILLANE_SOURCE "' && bash -c '. scripts/lib/steps.sh; . scripts/lib/tests.sh; "
                         "failed_tests \"$0\"' '" +
                         log.string() + "' > '" + names.string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(concurrency-mt-unsafe)
    std::ifstream stream(names);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(FailedTests, NamesTestsThatFailedCrashedTimedOutOrWereNotFound) {
    EXPECT_EQ(failedTests("    Start 2: Bad.One\n"
                          "1/6 Test #2: Bad.One ..........................***Failed    0.01 sec\n"
                          "what the test printed\n"
                          "    Start 4: Bad.Crash\n"
                          "2/6 Test #4: Bad.Crash ........................***Exception: SegFault  0.01 sec\n"
                          "    Start 6: Bad.Missing\n"
                          "3/6 Test #6: Bad.Missing ......................***Not Run   0.00 sec\n"
                          "    Start 3: Bad.Slow/0\n"
                          "6/6 Test #3: Bad.Slow/0 .......................***Timeout   1.00 sec\n"),
              "Bad.One\nBad.Crash\nBad.Missing\nBad.Slow/0\n");
}

TEST(FailedTests, NamesNoTestThatPassedOrWasSkipped) {
    EXPECT_EQ(failedTests("    Start 1: Good.One\n"
                          "    Start 5: Skip.Me\n"
                          "4/6 Test #1: Good.One .........................   Passed    0.00 sec\n"
                          "5/6 Test #5: Skip.Me ..........................***Skipped   0.00 sec\n"
                          "The following tests did not run:\n\t  5 - Skip.Me (Skipped)\n"),
              "");
}

TEST(FailedTests, NamesTheTestThatHadNotEndedWhenTheRunWasCutOff) {
    EXPECT_EQ(failedTests("    Start 1: Good.One\n"
                          "1/6 Test #1: Good.One .........................   Passed    0.00 sec\n"
                          "    Start 2: Endless.One\n"),
              "Endless.One (had not ended)\n");
}

} // namespace
} // namespace quillane

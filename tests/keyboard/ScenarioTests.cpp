// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/Scenario.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace quillane {
namespace {

namespace fs = std::filesystem;
using testing::Scenario;

std::vector<fs::path> scenarioFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(QUILLANE_SCENARIOS)) {
        if (entry.path().extension() == ".txt") {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

class KeyboardScenarioTest : public ::testing::TestWithParam<fs::path> {};

TEST_P(KeyboardScenarioTest, Holds) {
    EXPECT_EQ(Scenario::run(GetParam()), "") << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Files, KeyboardScenarioTest, ::testing::ValuesIn(scenarioFiles()), [](const auto& file) {
    auto name = file.param.stem().string();
    std::ranges::replace_if(
        name, [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
    return name;
});

/// A scenario that is written for one test of the runner itself.
std::string runText(const std::string& text) {
    const auto file = fs::path(::testing::TempDir()) / ("quillane-scenario-" + std::to_string(::getpid()) + ".txt");
    std::ofstream(file) << text;
    auto wrong = Scenario::run(file);
    fs::remove(file);
    return wrong;
}

const std::string ready = "front com.apple.TextEdit\nsources hebrew\nfocus text\nstart\n";

TEST(ScenarioRunner, ReportsTheFailingLine) {
    const auto chord = ready + "press left-control right-shift\nrelease left-control right-shift\n";
    EXPECT_EQ(runText(chord + "expect direction RTL\n"), "");
    EXPECT_EQ(runText(chord + "expect direction LTR\n"),
              "line 7, \"expect direction LTR\": expected \"direction LTR\", but there was \"direction RTL\"");
    EXPECT_EQ(runText(chord + "expect nothing\n"),
              "line 7, \"expect nothing\": expected \"nothing\", but there was \"direction RTL\"");
    EXPECT_EQ(runText(ready + "expect direction RTL\n"),
              "line 5, \"expect direction RTL\": expected \"direction RTL\", but there was \"nothing\"");
}

TEST(ScenarioRunner, ReadsTheText) {
    EXPECT_EQ(runText(ready + "press left-shift\ntype a 1\nexpect text a.\ntype s\nexpect text s\n"), "");
    EXPECT_EQ(runText(ready + "type a\nexpect text a\n"),
              "line 6, \"expect text a\": expected \"a\", but there was \".\"");
}

TEST(ScenarioRunner, AForgottenChordFailsAtTheEnd) {
    EXPECT_EQ(runText(ready + "press left-option left-shift\nrelease left-option left-shift\n"),
              "at the end: language switch was not expected anywhere");
}

TEST(ScenarioRunner, MistakesAreNotPassedOver) {
    for (const auto* line : {"jump", "press left-foot", "type ab", "release a", "front", "focus button",
                             "source french", "option paused", "option hurry on", "option paused maybe"}) {
        EXPECT_NE(runText(ready + line + "\n"), "") << line;
    }
    EXPECT_EQ(Scenario::run("no such file"), "cannot be read");
}

} // namespace
} // namespace quillane

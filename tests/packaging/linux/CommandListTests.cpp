// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"
#include "packaging/linux/Tools.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <regex>

namespace quillane::packaging {
namespace {

using ::testing::UnorderedElementsAreArray;
using Lines = std::vector<std::string>;

const std::string completions = (linuxFolder / "completions").string();

/// Commands and options as a list, one line each: `line(word, synopsis)`.
template <typename Line>
Lines ofEveryWord(Line line) {
    Lines lines;
    for (const auto& synopsis : commandLine::synopses()) {
        for (const auto word : {synopsis.word, synopsis.shorthand}) {
            if (!word.empty()) {
                lines.push_back(line(std::string(word), synopsis));
            }
        }
    }
    return lines;
}

Lines words() {
    return ofEveryWord([](const std::string& word, const auto&) { return word; });
}

bool isOption(const std::string& line) {
    return line.starts_with('-');
}

/// The commands that take the argument.
Lines commandsWith(std::string_view argument) {
    Lines result;
    for (const auto& synopsis : commandLine::synopses()) {
        if (synopsis.argument == argument && !synopsis.word.empty()) {
            result.emplace_back(synopsis.word);
        }
    }
    return result;
}

/// The text of a line of the manual page: without macro, quotes, font changes and escaped hyphens.
std::string withoutMarkup(std::string line) {
    line = std::regex_replace(line, std::regex(R"(^\.BR? )"), "");
    line = std::regex_replace(line, std::regex(R"(\\f[A-Z])"), "");
    line = std::regex_replace(line, std::regex(R"(\\-)"), "-");
    // Outside quotes spaces part arguments, which are printed without space between them.
    std::string text;
    bool quoted = false;
    for (const char character : line) {
        if (character == '"') {
            quoted = !quoted;
        } else if (quoted || character != ' ') {
            text += character;
        }
    }
    return text;
}

/// What the manual page explains in a section.
Lines entriesOf(const std::string& section) {
    std::istringstream page(live::readFile(linuxFolder / "quillane.1.in"));
    Lines entries;
    std::string line;
    while (std::getline(page, line) && line != ".SH " + section) {
    }
    while (std::getline(page, line) && !line.starts_with(".SH ")) {
        if (line == ".TP" && std::getline(page, line)) {
            entries.push_back(withoutMarkup(line));
        }
    }
    return entries;
}

TEST(ManualPage, ExplainsEveryCommandAndOptionAndNoOther) {
    Lines commands;
    Lines options;
    for (const auto& synopsis : commandLine::synopses()) {
        std::string entry(synopsis.word);
        entry += synopsis.shorthand.empty() ? "" : ", " + std::string(synopsis.shorthand);
        entry += synopsis.argument.empty() ? "" : " [" + std::string(synopsis.argument) + "]";
        if (!entry.empty()) {
            (isOption(entry) ? options : commands).push_back(entry);
        }
    }
    EXPECT_THAT(entriesOf("COMMANDS"), UnorderedElementsAreArray(commands));
    EXPECT_THAT(entriesOf("OPTIONS"), UnorderedElementsAreArray(options));
}

TEST(ManualPage, IsFormattedWithoutAWarning) {
    QUILLANE_NEEDS("groff");
    const auto result = run({"groff", "-man", "-Tutf8", "-Kutf8", "-ww", "-z", QUILLANE_MANUAL_PAGE});
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.errors, "");
}

/// What the shell's function for bash offers for the last of these words.
Lines fromBash(const std::string& words) {
    const auto result = run({"bash", "-c",
                             "source '" + completions + "/quillane.bash'; COMP_WORDS=(quillane " + words +
                                 "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _quillane; "
                                 "((${#COMPREPLY[@]} == 0)) || printf '%s\\n' \"${COMPREPLY[@]}\""});
    EXPECT_EQ(result.errors, "");
    return linesOf(result.output);
}

TEST(BashCompletions, OfferEveryCommandAndOption) {
    EXPECT_THAT(fromBash("''"), UnorderedElementsAreArray(words()));
    EXPECT_EQ(fromBash("re"), Lines{"resume"});
    EXPECT_EQ(fromBash("pause ''"), Lines{});
}

TEST(BashCompletions, OfferTheArgumentsOfACommand) {
    for (const auto& command : commandsWith("--json")) {
        EXPECT_EQ(fromBash(command + " ''"), Lines{"--json"}) << command;
    }
    for (const auto& command : commandsWith("FILE")) {
        EXPECT_EQ(fromBash(command + " '" + source.string() + "/READ'"), Lines{source.string() + "/README.md"});
    }
    EXPECT_EQ(fromBash("status --json ''"), Lines{});
}

/// What the function for zsh offers, run with stand-ins for the functions of the completion system, which print it.
Lines fromZsh(const std::string& words) {
    const auto result = run({"zsh", "-f", "-c",
                             "_describe() { print -rl -- \"${(@P)argv[-1]}\" }; _files() { print FILES }; "
                             "compadd() { shift; print -rl -- \"$@\" }; words=(quillane " +
                                 words + "); CURRENT=${#words}; source '" + completions + "/_quillane'"});
    EXPECT_EQ(result.errors, "");
    return linesOf(result.output);
}

TEST(ZshCompletions, OfferEveryCommandAndOptionWithItsSummary) {
    QUILLANE_NEEDS("zsh");
    EXPECT_THAT(fromZsh("''"), UnorderedElementsAreArray(ofEveryWord([](const std::string& word, const auto& synopsis) {
                    return word + ":" + std::string(synopsis.summary);
                })));
}

TEST(ZshCompletions, OfferTheArgumentsOfACommand) {
    QUILLANE_NEEDS("zsh");
    for (const auto& command : commandsWith("--json")) {
        EXPECT_EQ(fromZsh(command + " ''"), Lines{"--json"}) << command;
    }
    for (const auto& command : commandsWith("FILE")) {
        EXPECT_EQ(fromZsh(command + " ''"), Lines{"FILES"}) << command;
    }
    EXPECT_EQ(fromZsh("pause ''"), Lines{});
    EXPECT_EQ(fromZsh("status --json ''"), Lines{});
}

/// What fish offers at the end of the line; words and summaries are parted by a tab.
Lines fromFish(const std::string& line) {
    const auto result =
        run({"fish", "--no-config", "-c", "source '" + completions + "/quillane.fish'; complete -C '" + line + "'"});
    EXPECT_EQ(result.errors, "");
    return linesOf(result.output);
}

TEST(FishCompletions, OfferEveryCommandAndOptionWithItsSummary) {
    QUILLANE_NEEDS("fish");
    auto expected = ofEveryWord(
        [](const std::string& word, const auto& synopsis) { return word + "\t" + std::string(synopsis.summary); });
    const auto firstOption = std::stable_partition(expected.begin(), expected.end(), std::not_fn(isOption));
    const Lines expectedOptions(firstOption, expected.end());
    expected.erase(firstOption, expected.end());
    EXPECT_THAT(fromFish("quillane "), UnorderedElementsAreArray(expected));
    EXPECT_THAT(fromFish("quillane -"), UnorderedElementsAreArray(expectedOptions));
}

TEST(FishCompletions, OfferTheArgumentsOfACommand) {
    QUILLANE_NEEDS("fish");
    for (const auto& command : commandsWith("--json")) {
        EXPECT_EQ(fromFish("quillane " + command + " -"), Lines{"--json"}) << command;
    }
    for (const auto& command : commandsWith("FILE")) {
        EXPECT_EQ(fromFish("quillane " + command + " " + source.string() + "/READ"),
                  Lines{source.string() + "/README.md"});
    }
    EXPECT_EQ(fromFish("quillane pause "), Lines{});
}

} // namespace
} // namespace quillane::packaging

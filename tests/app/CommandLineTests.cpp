// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane::commandLine {
namespace {

Call parsed(std::vector<std::string_view> words) {
    return parse(words);
}

void expectUsageError(std::vector<std::string_view> words, const std::string& message) {
    EXPECT_EQ(parsed(std::move(words)), Call(UsageError{message}));
}

TEST(CommandLine, NoWordsRunTheAgent) {
    EXPECT_EQ(parsed({}), Call(RunAgent{}));
}

TEST(CommandLine, TheSessionStartsTheAgentAtLogin) {
    EXPECT_EQ(parsed({"--at-login"}), Call(RunAgent{true}));
}

TEST(CommandLine, LaunchArgumentsOfMacOSAreIgnored) {
    EXPECT_EQ(parsed({"-psn_0_989382"}), Call(RunAgent{}));
    EXPECT_EQ(parsed({"-NSQuitAlwaysKeepsWindows", "NO"}), Call(RunAgent{}));
    EXPECT_EQ(parsed({"-AppleLanguages", "(he)", "-psn_0_1", "--at-login"}), Call(RunAgent{true}));
    EXPECT_EQ(parsed({"-NSDocumentRevisionsDebugMode"}), Call(RunAgent{}));
    EXPECT_EQ(parsed({"share", "-psn_0_1", "-NSfile"}), Call(ShareFiles{{"-psn_0_1", "-NSfile"}}));
}

TEST(CommandLine, CommandsAreSentToTheRunningAgent) {
    for (const auto* command : {"capture", "history", "pause", "resume", "quit", "status"}) {
        EXPECT_EQ(parsed({command}), Call(SendRequest{{command, {}}}));
    }
    EXPECT_EQ(parsed({"status", "--json"}), Call(SendRequest{{"status", {"--json"}}}));
}

TEST(CommandLine, ADiagnosisIsTextOrJson) {
    EXPECT_EQ(parsed({"doctor"}), Call(Diagnose{false}));
    EXPECT_EQ(parsed({"doctor", "--json"}), Call(Diagnose{true}));
    expectUsageError({"doctor", "--xml"}, "unknown argument '--xml'");
    expectUsageError({"doctor", "--json", "more"}, "unknown argument 'more'");
}

TEST(CommandLine, FilesAreSharedAsTheyWereGiven) {
    EXPECT_EQ(parsed({"share", "a b.txt"}), Call(ShareFiles{{"a b.txt"}}));
    EXPECT_EQ(parsed({"share", "--help", ""}), Call(ShareFiles{{"--help", ""}}));
    EXPECT_EQ(parsed({"share"}), Call(ShareFiles{}));
}

TEST(CommandLine, HelpAndVersion) {
    EXPECT_EQ(parsed({"--help"}), Call(ShowHelp{}));
    EXPECT_EQ(parsed({"-h"}), Call(ShowHelp{}));
    EXPECT_EQ(parsed({"--version"}), Call(ShowVersion{}));
}

TEST(CommandLine, UnknownWordsAreNamed) {
    expectUsageError({"stauts"}, "unknown command 'stauts'");
    expectUsageError({"--jsno"}, "unknown option '--jsno'");
    expectUsageError({"-"}, "unknown option '-'");
    expectUsageError({""}, "unknown command ''");
    expectUsageError({"status", "--xml"}, "unknown argument '--xml'");
    expectUsageError({"status", "--json", "more"}, "unknown argument 'more'");
    expectUsageError({"pause", "now"}, "unknown argument 'now'");
    expectUsageError({"--version", "x"}, "unknown argument 'x'");
}

TEST(CommandLine, UnknownCommandIsNamedBeforeItsArguments) {
    expectUsageError({"stauts", "--json"}, "unknown command 'stauts'");
}

TEST(CommandLine, UsageHasALineForEverySynopsis) {
    EXPECT_EQ(usage(), "usage: quillane                    start the agent, or show the settings of the one that runs\n"
                       "       quillane status [--json]    say what the agent does\n"
                       "       quillane doctor [--json]    say what works, and what to do about the rest\n"
                       "       quillane share [FILE]       upload a file and show its download link\n"
                       "       quillane history            open the clipboard history, or close it\n"
                       "       quillane capture            select an area of the screen and copy its picture\n"
                       "       quillane pause              pause everything\n"
                       "       quillane resume             go on after a pause\n"
                       "       quillane quit               end the agent\n"
                       "       quillane --at-login         start the agent as a session does at login\n"
                       "       quillane --help, -h         show this text\n"
                       "       quillane --version          show the version\n");
}

TEST(CommandLine, EverySynopsisIsACall) {
    for (const auto& synopsis : synopses()) {
        for (const auto word : {synopsis.word, synopsis.shorthand}) {
            if (!word.empty()) {
                EXPECT_FALSE(std::holds_alternative<UsageError>(parsed({word}))) << word;
            }
            if (!word.empty() && !synopsis.argument.empty()) {
                EXPECT_FALSE(std::holds_alternative<UsageError>(parsed({word, synopsis.argument}))) << word;
            }
        }
    }
}

} // namespace
} // namespace quillane::commandLine

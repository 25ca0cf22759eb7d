// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <algorithm>
#include <array>

namespace quillane::CommandLine {

namespace {

constexpr std::array<std::string_view, 5> simpleCommands{"capture", "history", "pause", "resume", "quit"};

UsageError unknown(std::string_view kind, std::string_view word) {
    return {"unknown " + std::string(kind) + " '" + std::string(word) + "'"};
}

} // namespace

Call parse(std::span<const std::string_view> words) {
    if (words.empty()) {
        return RunAgent{};
    }
    const auto command = words.front();
    const auto rest = words.subspan(1);
    if (command == "status") {
        if (rest.empty()) {
            return SendRequest{{"status", {}}};
        }
        if (rest.size() == 1 && rest.front() == "--json") {
            return SendRequest{{"status", {"--json"}}};
        }
        return unknown("argument", rest.front() == "--json" ? rest[1] : rest.front());
    }
    if (command == "share") {
        return ShareFiles{{rest.begin(), rest.end()}};
    }
    if (!rest.empty()) {
        return unknown("argument", rest.front());
    }
    if (command == "--help" || command == "-h") {
        return ShowHelp{};
    }
    if (command == "--version") {
        return ShowVersion{};
    }
    if (command == "--at-login") {
        return RunAgent{true};
    }
    if (std::ranges::find(simpleCommands, command) != simpleCommands.end()) {
        return SendRequest{{std::string(command), {}}};
    }
    return unknown(command.starts_with('-') ? "option" : "command", command);
}

std::string_view usage() {
    return "usage: quillane                    start the agent, or show the settings of the one that runs\n"
           "       quillane status [--json]    say what the agent does\n"
           "       quillane share [FILE]       upload a file and show its download link\n"
           "       quillane history            open the clipboard history, or close it\n"
           "       quillane capture            select an area of the screen and copy its picture\n"
           "       quillane pause | resume     pause everything, or go on\n"
           "       quillane quit               end the agent\n"
           "       quillane --help | --version\n";
}

} // namespace quillane::CommandLine

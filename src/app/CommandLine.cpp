// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <algorithm>
#include <array>

namespace quillane::commandLine {

namespace {

constexpr std::array<std::string_view, 5> simpleCommands{"capture", "history", "pause", "resume", "quit"};

UsageError unknown(std::string_view kind, std::string_view word) {
    return {"unknown " + std::string(kind) + " '" + std::string(word) + "'"};
}

/// Leaves out arguments that macOS itself passes to an application that it starts: its process serial number at the
/// first launch of a download (-psn_0_12345), and settings for this launch only in pairs (-NSQuitAlwaysKeepsWindows NO,
/// -AppleLanguages (he)).
std::span<const std::string_view> withoutLaunchArguments(std::span<const std::string_view> words) {
    while (!words.empty()) {
        if (words.front().starts_with("-psn_")) {
            words = words.subspan(1);
        } else if (words.front().starts_with("-NS") || words.front().starts_with("-Apple")) {
            words = words.subspan(std::min<std::size_t>(2, words.size()));
        } else {
            break;
        }
    }
    return words;
}

Call parseOwn(std::span<const std::string_view> words) {
    if (words.empty()) {
        return RunAgent{};
    }
    const auto command = words.front();
    const auto rest = words.subspan(1);
    if (command == "status" || command == "doctor") {
        const bool json = !rest.empty() && rest.front() == "--json";
        if (rest.size() > (json ? 1 : 0)) {
            return unknown("argument", rest[json ? 1 : 0]);
        }
        if (command == "doctor") {
            return Diagnose{json};
        }
        return SendRequest{{"status", json ? std::vector<std::string>{"--json"} : std::vector<std::string>()}};
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

} // namespace

Call parse(std::span<const std::string_view> words) {
    return parseOwn(withoutLaunchArguments(words));
}

std::string_view usage() {
    return "usage: quillane                    start the agent, or show the settings of the one that runs\n"
           "       quillane status [--json]    say what the agent does\n"
           "       quillane doctor [--json]    say what works, and what to do about the rest\n"
           "       quillane share [FILE]       upload a file and show its download link\n"
           "       quillane history            open the clipboard history, or close it\n"
           "       quillane capture            select an area of the screen and copy its picture\n"
           "       quillane pause | resume     pause everything, or go on\n"
           "       quillane quit               end the agent\n"
           "       quillane --help | --version\n";
}

} // namespace quillane::commandLine

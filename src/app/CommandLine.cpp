// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace quillane::commandLine {

namespace {

using Words = std::span<const std::string_view>;

UsageError unknown(std::string_view kind, std::string_view word) {
    return {"unknown " + std::string(kind) + " '" + std::string(word) + "'"};
}

/// Leaves out arguments that macOS itself passes to an application that it starts: its process serial number at the
/// first launch of a download (-psn_0_12345), and settings for this launch only in pairs (-NSQuitAlwaysKeepsWindows NO,
/// -AppleLanguages (he)).
Words withoutLaunchArguments(Words words) {
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

/// The call, unless a word follows that it does not take.
Call alone(Words rest, Call call) {
    return rest.empty() ? std::move(call) : unknown("argument", rest.front());
}

/// The call that `make` returns for whether "--json" follows.
Call withFormat(Words rest, Call (*make)(bool json)) {
    const bool json = !rest.empty() && rest.front() == "--json";
    return alone(rest.subspan(json ? 1 : 0), make(json));
}

Call request(std::string_view word, Words rest) {
    return alone(rest, SendRequest{{std::string(word), {}}});
}

Call status(std::string_view /*word*/, Words rest) {
    return withFormat(rest, [](bool json) -> Call {
        return SendRequest{{"status", json ? std::vector<std::string>{"--json"} : std::vector<std::string>()}};
    });
}

Call doctor(std::string_view /*word*/, Words rest) {
    return withFormat(rest, [](bool json) -> Call { return Diagnose{json}; });
}

Call share(std::string_view /*word*/, Words rest) {
    return ShareFiles{{rest.begin(), rest.end()}};
}

Call agent(std::string_view word, Words rest) {
    return alone(rest, RunAgent{!word.empty()});
}

Call help(std::string_view /*word*/, Words rest) {
    return alone(rest, ShowHelp{});
}

Call version(std::string_view /*word*/, Words rest) {
    return alone(rest, ShowVersion{});
}

struct Row {
    Synopsis synopsis;
    Call (*read)(std::string_view word, Words rest);
};

/// Everything that may follow the program's name. The manual page and the completions in packaging/linux list the same;
/// `packaging_tests` compares them.
constexpr std::array<Row, 12> rows{{
    {{"", "", "", "start the agent, or show the settings of the one that runs"}, agent},
    {{"status", "", "--json", "say what the agent does"}, status},
    {{"doctor", "", "--json", "say what works, and what to do about the rest"}, doctor},
    {{"share", "", "FILE", "upload a file and show its download link"}, share},
    {{"history", "", "", "open the clipboard history, or close it"}, request},
    {{"capture", "", "", "select an area of the screen and copy its picture"}, request},
    {{"pause", "", "", "pause everything"}, request},
    {{"resume", "", "", "go on after a pause"}, request},
    {{"quit", "", "", "end the agent"}, request},
    {{"--at-login", "", "", "start the agent as a session does at login"}, agent},
    {{"--help", "-h", "", "show this text"}, help},
    {{"--version", "", "", "show the version"}, version},
}};

Call parseOwn(Words words) {
    if (words.empty()) {
        return rows[0].read({}, {});
    }
    const auto word = words.front();
    for (const auto& [synopsis, read] : rows) {
        if (!word.empty() && (word == synopsis.word || word == synopsis.shorthand)) {
            return read(word, words.subspan(1));
        }
    }
    return unknown(word.starts_with('-') ? "option" : "command", word);
}

/// The words of a synopsis as they are typed: "status [--json]", "--help, -h".
std::string typed(const Synopsis& synopsis) {
    std::string result(synopsis.word);
    if (!synopsis.shorthand.empty()) {
        result += ", " + std::string(synopsis.shorthand);
    }
    if (!synopsis.argument.empty()) {
        result += " [" + std::string(synopsis.argument) + "]";
    }
    return result;
}

} // namespace

Call parse(std::span<const std::string_view> words) {
    return parseOwn(withoutLaunchArguments(words));
}

std::vector<Synopsis> synopses() {
    std::vector<Synopsis> result;
    std::ranges::transform(rows, std::back_inserter(result), &Row::synopsis);
    return result;
}

std::string usage() {
    constexpr std::size_t width = 18;
    std::string text;
    for (const auto& synopsis : synopses()) {
        auto words = typed(synopsis);
        words.resize(std::max(words.size(), width), ' ');
        text += (text.empty() ? "usage: quillane " : "       quillane ") + words + " " + std::string(synopsis.summary) +
                "\n";
    }
    return text;
}

} // namespace quillane::commandLine

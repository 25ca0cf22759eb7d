// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/NautilusScript.hpp"

#include "core/support/AtomicFile.hpp"

#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <fstream>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace quillane {

namespace {

namespace fs = std::filesystem;

/// Identifies a script under any title.
constexpr std::string_view mark = "#!/bin/sh\n# Made by Quillane, whose settings remove it.\n";

/// The word, quoted so that the shell takes it literally (POSIX, Shell Command Language, 2.2.2).
std::string shellWord(std::string_view word) {
    std::string result = "'";
    for (const char c : word) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

bool isMarked(const fs::path& file) {
    std::array<char, mark.size()> start{};
    std::ifstream in(file, std::ios::binary);
    in.read(start.data(), start.size());
    return in.gcount() == static_cast<std::streamsize>(start.size()) &&
           std::string_view(start.data(), start.size()) == mark;
}

std::vector<fs::path> markedFiles(const fs::path& folder) {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator next(folder, error), end; !error && next != end; next.increment(error)) {
        if (next->is_regular_file(error) && isMarked(next->path())) {
            found.push_back(next->path());
        }
    }
    return found;
}

bool removeAll(const std::vector<fs::path>& files) {
    return std::ranges::all_of(files, [](const fs::path& file) {
        std::error_code error;
        fs::remove(file, error);
        return !error;
    });
}

} // namespace

NautilusScript::NautilusScript(fs::path program, fs::path folder)
    : program_(std::move(program)), folder_(std::move(folder)) {}

bool NautilusScript::exists() const {
    return !markedFiles(folder_).empty();
}

bool NautilusScript::write(const std::string& title) const {
    const auto file = folder_ / title;
    std::error_code error;
    if (fs::exists(file, error) && !isMarked(file)) {
        return false;
    }
    fs::create_directories(folder_, error);
    const auto script = std::string(mark) + "exec " + shellWord(program_.string()) + " share \"$@\"\n";
    if (!core::writeFileAtomically(file, std::as_bytes(std::span(script)), 0755)) {
        return false;
    }
    auto others = markedFiles(folder_);
    std::erase(others, file);
    return removeAll(others);
}

bool NautilusScript::remove() const {
    return removeAll(markedFiles(folder_));
}

fs::path nautilusScriptsFolder() {
    return fs::path(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString()) / "nautilus" /
           "scripts";
}

bool isNautilusInstalled() {
    return !QStandardPaths::findExecutable(QStringLiteral("nautilus")).isEmpty();
}

} // namespace quillane

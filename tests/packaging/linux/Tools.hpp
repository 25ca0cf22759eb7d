// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "support/ChildProcess.hpp"
#include "support/Environment.hpp"
#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace quillane::packaging {

inline const std::filesystem::path source = QUILLANE_SOURCE;
inline const std::filesystem::path linuxFolder = source / "packaging/linux";

/// Runs a program in the test's own environment, but with texts in English.
inline live::CommandResult run(std::vector<std::string> arguments, const live::Environment& more = {},
                               std::chrono::seconds limit = std::chrono::seconds{60}) {
    auto environment = live::currentEnvironment();
    environment["LC_ALL"] = "C.UTF-8";
    for (const auto& [name, value] : more) {
        environment[name] = value;
    }
    return live::runToEnd({.arguments = std::move(arguments), .environment = std::move(environment)}, limit);
}

inline bool isInstalled(const std::string& tool) {
    return run({"sh", "-c", "command -v \"$0\"", tool}).succeeded();
}

/// Sorted, so that lists can be compared.
inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

} // namespace quillane::packaging

/// Leaves a test out, with its reason, where a tool of scripts/debian-packages.txt is not installed.
#define QUILLANE_NEEDS(tool)                                                                                           \
    if (!quillane::packaging::isInstalled(tool))                                                                       \
    GTEST_SKIP() << (tool) << " is not installed; scripts/install-dependencies packages installs it"

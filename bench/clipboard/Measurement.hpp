// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <chrono>
#include <concepts>
#include <cstdio>
#include <string>
#include <vector>

namespace quillane::bench {

/// How long a call takes, in seconds.
[[nodiscard]] double secondsOf(std::invocable auto&& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

[[nodiscard]] inline double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// One line: the figure, its goal, and whether it meets it.
inline bool report(const std::string& name, double figure, const char* unit, double goal, bool mayBeAbove = false) {
    const bool isMet = mayBeAbove ? figure >= goal : figure <= goal;
    std::printf("%-68s %10.3f %-4s goal %s %g  %s\n", name.c_str(), figure, unit, mayBeAbove ? "at least" : "at most",
                goal, isMet ? "met" : "MISSED");
    return isMet;
}

// Each prints its figures and returns whether all of them meet their goals.
[[nodiscard]] bool measureDigest();
[[nodiscard]] bool measureSaving();
[[nodiscard]] bool measureWholeVault();
[[nodiscard]] bool measureMemory();
[[nodiscard]] bool measureSearch();

} // namespace quillane::bench

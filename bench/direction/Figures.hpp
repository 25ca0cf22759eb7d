// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillane::bench {

/// Ends the program with this reason when a step does not succeed.
inline void must(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

inline double milliseconds(std::chrono::steady_clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

/// One figure of every run.
struct Figure {
    const char* name;
    std::vector<double> values = {};

    void print() {
        std::ranges::sort(values);
        std::printf("%-68s median %7.2f   best %7.2f   worst %7.2f\n", name, values[values.size() / 2], values.front(),
                    values.back());
    }
};

} // namespace quillane::bench

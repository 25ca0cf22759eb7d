// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <string>

namespace quillane::testing {

/// Skips the test when its driver says what this machine lacks for it: `std::string lacking();`, empty for nothing.
/// Most drivers need nothing and have no such function. For SetUp.
template <typename Driver>
void skipWhatIsLacking(Driver& driver) {
    if constexpr (requires { driver.lacking(); }) {
        if (const std::string lacking = driver.lacking(); !lacking.empty()) {
            GTEST_SKIP() << lacking;
        }
    }
}

} // namespace quillane::testing

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "fileshare/QrCode.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillane {
namespace {

TEST(QrCode, HasTheSideOfTheSmallestVersionThatHolds) {
    // Capacities in bytes at level M: ISO/IEC 18004, table 7.
    EXPECT_EQ(QrCode::encode(std::string(14, 'x'))->side, 21);
    EXPECT_EQ(QrCode::encode(std::string(15, 'x'))->side, 25);
    EXPECT_EQ(QrCode::encode(std::string(2331, 'x'))->side, 177);
}

TEST(QrCode, HasAFinderPatternInThreeCorners) {
    const auto code = QrCode::encode("https://files.example/up/abc/file.txt").value();
    ASSERT_EQ(code.dark.size(), static_cast<std::size_t>(code.side * code.side));
    for (const auto& [left, top] : {std::pair{0, 0}, std::pair{code.side - 7, 0}, std::pair{0, code.side - 7}}) {
        for (int i = 0; i < 7; ++i) {
            for (int j = 0; j < 7; ++j) {
                const int ring = std::min({i, j, 6 - i, 6 - j});
                EXPECT_EQ(code.isDark(left + i, top + j), ring != 1) << left << ' ' << top << ' ' << i << ' ' << j;
            }
        }
    }
}

TEST(QrCode, NothingAndTooMuchHaveNone) {
    EXPECT_FALSE(QrCode::encode(""));
    EXPECT_FALSE(QrCode::encode(std::string(2332, 'x')));
    EXPECT_FALSE(QrCode::encode(std::string(8192, 'x')));
}

} // namespace
} // namespace quillane

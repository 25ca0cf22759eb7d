// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/HostName.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(HostName, IsSpelledInLowerCaseAscii) {
    EXPECT_EQ(asciiHostName("Files.Example"), "files.example");
    EXPECT_EQ(asciiHostName("קבצים.example"), "xn--5dbqm8ad.example");
    EXPECT_EQ(asciiHostName("BÜCHER.example"), "xn--bcher-kva.example");
    EXPECT_EQ(asciiHostName("faß.example"), "xn--fa-hia.example"); // the sharp s is a letter of its own
}

TEST(HostName, NamesThatBreakTheRulesHaveNone) {
    for (const auto* name : {"", "a_b.example", "a b.example", "-a.example", "אa.example", "xn--a.example",
                             "a\u200Db.example", "a..example"}) {
        EXPECT_EQ(asciiHostName(name), std::nullopt) << name;
    }
    EXPECT_EQ(asciiHostName(std::string(64, 'a')), std::nullopt);
    EXPECT_NE(asciiHostName(std::string(63, 'a')), std::nullopt);
}

} // namespace
} // namespace quillane::core

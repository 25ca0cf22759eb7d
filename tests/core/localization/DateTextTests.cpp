// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/localization/DateText.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(DateText, IsWrittenAsTheLanguageWritesIt) {
    constexpr Date date{785'000'000}; // 2025-11-16 15:33 UTC; at most a day away elsewhere
    const auto english = dateText(date, AppLanguage::english);
    EXPECT_NE(english.find("Nov 1"), std::string::npos) << english;
    EXPECT_NE(english.find("2025"), std::string::npos) << english;
    EXPECT_TRUE(english.find("AM") != std::string::npos || english.find("PM") != std::string::npos) << english;
    EXPECT_NE(dateText(date, AppLanguage::hebrew).find("בנוב"), std::string::npos)
        << dateText(date, AppLanguage::hebrew);
    const auto arabic = dateText(date, AppLanguage::arabic);
    EXPECT_NE(arabic.find("نوفمبر"), std::string::npos) << arabic;
    EXPECT_NE(arabic.find("2025"), std::string::npos) << arabic; // with Western digits
    EXPECT_FALSE(dateText({1e300}, AppLanguage::arabic).empty());
}

} // namespace
} // namespace quillane::core

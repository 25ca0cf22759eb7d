// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/RTLInputLanguage.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace quillane::core {
namespace {

struct Row {
    const char* language;
    bool rightToLeft;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << '"' << row.language << '"';
}

class RTLInputLanguageTableTest : public ::testing::TestWithParam<Row> {};

TEST_P(RTLInputLanguageTableTest, IsAsTheScript) {
    const std::vector<std::string> languages{GetParam().language};
    EXPECT_EQ(rtlInputLanguage::isRightToLeft(languages), GetParam().rightToLeft);
}

constexpr Row table[] = {
    // Hebrew, Arabic, Thaana and Syriac script by the language alone
    {"he", true},
    {"iw", true},
    {"yi", true},
    {"ar", true},
    {"fa", true},
    {"ur", true},
    {"ps", true},
    {"ckb", true},
    {"ug", true},
    {"sd", true},
    {"dv", true},
    {"syr", true},
    // with a region, an extension, other spellings
    {"he-IL", true},
    {"ar-EG", true},
    {"fa-AF", true},
    {"HE", true},
    {"he_IL", true},
    {"heb", true},
    {"ara", true},
    {"he-IL-u-nu-hebr", true},
    // a script of its own
    {"ur-Aran", true},
    {"pa-Arab", true},
    {"az-Arab", true},
    {"uz-Arab", true},
    {"ku-Arab", true},
    {"ms-Arab", true},
    {"en-Hebr", true},
    {"und-Hebr", true},
    {"he-Latn", false},
    {"ar-Latn", false},
    {"pa", false},
    {"ku", false},
    // right-to-left by the direction of its characters
    {"nqo", true},
    {"ff-Adlm", true},
    {"rhg-Rohg", true},
    // left to right
    {"en", false},
    {"en-US", false},
    {"ru", false},
    {"zh-Hans", false},
    {"ja", false},
    {"tr", false},
    {"hi", false},
    {"ff", false},
    // nothing that is known
    {"", false},
    {"und", false},
    {"xx", false},
    {"-", false},
    {"he!", false},
    {"not a language", false},
};

INSTANTIATE_TEST_SUITE_P(Languages, RTLInputLanguageTableTest, ::testing::ValuesIn(table), [](const auto& row) {
    std::string name = std::to_string(row.index) + "_";
    for (const char character : std::string_view(row.param.language)) {
        name += std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_';
    }
    return name;
});

TEST(RTLInputLanguage, OnlyTheFirstLanguageCounts) {
    EXPECT_TRUE(rtlInputLanguage::isRightToLeft(std::vector<std::string>{"he", "en"}));
    EXPECT_FALSE(rtlInputLanguage::isRightToLeft(std::vector<std::string>{"en", "he"}));
    EXPECT_FALSE(rtlInputLanguage::isRightToLeft(std::vector<std::string>{"", "he"}));
}

TEST(RTLInputLanguage, AnEmptyListIsNotRightToLeft) {
    EXPECT_FALSE(rtlInputLanguage::isRightToLeft({}));
}

TEST(RTLInputLanguage, AnEndlessTagIsNotRightToLeft) {
    const std::vector<std::string> languages{"he-x-" + std::string(100'000, 'a'), "he"};
    EXPECT_FALSE(rtlInputLanguage::isRightToLeft(std::vector<std::string>{std::string(100'000, 'a')}));
    EXPECT_NO_FATAL_FAILURE(static_cast<void>(rtlInputLanguage::isRightToLeft(languages)));
}

} // namespace
} // namespace quillane::core

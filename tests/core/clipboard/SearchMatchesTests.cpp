// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/SearchMatches.hpp"

#include <gmock/gmock.h>

#include <string>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The pieces of the text that are shown in bold.
std::vector<std::string> bold(std::string_view text, std::string_view query) {
    std::vector<std::string> pieces;
    for (const auto& range : searchMatches(text, SearchQuery(query))) {
        pieces.emplace_back(text.substr(range.begin, range.end - range.begin));
    }
    return pieces;
}

TEST(SearchMatches, FindsEveryTermWhateverItsCase) {
    EXPECT_THAT(bold("The Brown fox, the BROWN dog", "brown the"), ElementsAre("The", "Brown", "the", "BROWN"));
    EXPECT_THAT(bold("nothing", "brown"), IsEmpty());
    EXPECT_THAT(bold("nothing", " "), IsEmpty());
    EXPECT_THAT(bold("", "brown"), IsEmpty());
}

TEST(SearchMatches, PointsBelongToTheLettersThatTheyStandOn) {
    EXPECT_THAT(bold("שָׁלוֹם עוֹלָם", "שלום"), ElementsAre("שָׁלוֹם"));
    EXPECT_THAT(bold("בְּרֵאשִׁ֖ית בָּרָא", "ברא"), ElementsAre("בְּרֵא", "בָּרָא"));
    EXPECT_THAT(bold("שלום", "שָׁלוֹם"), ElementsAre("שלום"));
}

TEST(SearchMatches, ArabicMarksMakeNoDifference) {
    EXPECT_THAT(bold("قُلْ مَرْحَبًا بِك", "مرحبا"), ElementsAre("مَرْحَبًا"));
    EXPECT_THAT(bold("القُرْآن", "قران"), ElementsAre("قُرْآن"));
}

TEST(SearchMatches, ALetterThatFoldsToSeveralIsBoldAsAWhole) {
    EXPECT_THAT(bold("Straße", "s"), ElementsAre("S", "ß"));
    EXPECT_THAT(bold("Straße", "strass"), ElementsAre("Straß"));
    EXPECT_THAT(bold("e\u0301te\u0301", "ete"), ElementsAre("e\u0301te\u0301"));
}

TEST(SearchMatches, MatchesThatTouchOrOverlapAreOne) {
    EXPECT_THAT(bold("abcdef", "bcd cde"), ElementsAre("bcde"));
    EXPECT_THAT(bold("abcdef", "ab cd"), ElementsAre("abcd"));
    EXPECT_THAT(bold("aaaa", "aa"), ElementsAre("aaaa"));
}

TEST(SearchMatches, InvisibleCharactersInsideAMatchDoNotEndIt) {
    EXPECT_THAT(bold("a\u200Fb c", "ab"), ElementsAre("a\u200Fb"));
}

TEST(SearchMatches, FindsMatchesAmongIllFormedBytes) {
    EXPECT_THAT(bold("\xff\xc3 abc \xe2\x82", "abc"), ElementsAre("abc"));
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/AppLanguage.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(AppLanguage, ListsEnglishHebrewArabicInThatOrder) {
    ASSERT_EQ(allLanguages.size(), 3U);
    EXPECT_EQ(allLanguages[0], AppLanguage::english);
    EXPECT_EQ(allLanguages[1], AppLanguage::hebrew);
    EXPECT_EQ(allLanguages[2], AppLanguage::arabic);
}

TEST(AppLanguage, HasTheIdentifierOfItsLocale) {
    EXPECT_EQ(languageID(AppLanguage::english), "en");
    EXPECT_EQ(languageID(AppLanguage::hebrew), "he");
    EXPECT_EQ(languageID(AppLanguage::arabic), "ar");
}

TEST(AppLanguage, NamesItselfInItsOwnLanguage) {
    EXPECT_EQ(nativeName(AppLanguage::english), "English");
    EXPECT_EQ(nativeName(AppLanguage::hebrew), "עברית");
    EXPECT_EQ(nativeName(AppLanguage::arabic), "العربية");
}

TEST(AppLanguage, RunsRightToLeftInHebrewAndArabic) {
    EXPECT_FALSE(isRTL(AppLanguage::english));
    EXPECT_TRUE(isRTL(AppLanguage::hebrew));
    EXPECT_TRUE(isRTL(AppLanguage::arabic));
}

TEST(AppLanguage, ComesBackFromItsIdentifier) {
    for (const auto language : allLanguages) {
        EXPECT_EQ(languageFromID(languageID(language)), language);
    }
}

TEST(AppLanguage, IsNothingForAnyOtherIdentifier) {
    for (const auto* id : {"", "EN", "iw", "he-IL", "en ", "arabic", "fr"}) {
        EXPECT_EQ(languageFromID(id), std::nullopt) << id;
    }
}

} // namespace
} // namespace quillane::core

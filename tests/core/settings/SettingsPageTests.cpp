// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/settings/SettingsPage.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillane::core {
namespace {

TEST(SettingsPage, HasSixPagesInOrder) {
    std::vector<std::string> titles;
    for (const auto page : allSettingsPages) {
        titles.push_back(title(page).rendered(AppLanguage::english));
    }
    EXPECT_EQ(titles,
              (std::vector<std::string>{"General", "Shortcuts", "History", "Permissions", "Testing", "Updates"}));
}

TEST(SettingsPage, ComesBackFromItsRawValue) {
    for (const auto page : allSettingsPages) {
        EXPECT_EQ(settingsPageFromRawValue(rawValue(page)), page);
        EXPECT_EQ(title(page).rendered(AppLanguage::hebrew), rawValue(page));
        EXPECT_FALSE(symbol(page).empty());
    }
    EXPECT_EQ(rawValue(SettingsPage::clipboard), "היסטוריה");
    EXPECT_EQ(settingsPageFromRawValue("General"), std::nullopt);
    EXPECT_EQ(settingsPageFromRawValue(""), std::nullopt);
}

} // namespace
} // namespace quillane::core

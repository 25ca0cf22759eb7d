// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/DirectionTarget.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillane::core {
namespace {

TEST(SupportedApplication, SevenInTheirOrder) {
    std::vector<std::string> rows;
    for (const auto& facts : supportedApplications) {
        EXPECT_EQ(&traits(facts.application), &facts);
        rows.push_back(std::string(facts.bundleID) + " | " + std::string(facts.displayName) + " | " +
                       std::string(facts.directionMenuTitle));
    }
    const std::vector<std::string> expected{
        "com.microsoft.Outlook | Outlook | ",
        "com.google.Chrome | Chrome | Writing Direction",
        "com.apple.Safari | Safari | Paragraph Direction",
        "com.apple.TextEdit | TextEdit | Writing Direction",
        "com.apple.Notes | Notes | Writing Direction",
        "com.apple.mail | Mail | Paragraph Direction",
        "com.microsoft.Word | Word | ",
    };
    EXPECT_EQ(rows, expected);
}

TEST(SupportedApplication, IsFoundByItsBundleIdentifier) {
    for (const auto& facts : supportedApplications) {
        EXPECT_EQ(supportedApplication(facts.bundleID), facts.application);
    }
}

TEST(SupportedApplication, IdentifiersAreComparedExactly) {
    for (const auto* other : {"com.apple.Mail", "com.apple.textedit", "com.apple.mail ", "com.apple", ""}) {
        EXPECT_EQ(supportedApplication(other), std::nullopt) << other;
    }
}

TEST(DirectionTestTargets, AreThoseOfTheDesktop) {
    const auto names = [](Desktop desktop) {
        std::vector<std::string> all;
        for (const auto& target : directionTestTargets(desktop)) {
            EXPECT_TRUE(hasDirectionCommands(target.bundleID)) << target.name;
            all.emplace_back(target.name);
        }
        return all;
    };
    EXPECT_EQ(names(Desktop::macOS),
              (std::vector<std::string>{"Outlook", "Chrome", "Safari", "TextEdit", "Notes", "Mail", "Word"}));
    EXPECT_EQ(names(Desktop::linuxDesktop), (std::vector<std::string>{"Chrome", "LibreOffice Writer"}));
}

} // namespace
} // namespace quillane::core

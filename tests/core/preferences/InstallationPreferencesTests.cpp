// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/InstallationPreferences.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillane::core {
namespace {

TEST(InstallationPreferences, ANewInstallationIsInEnglishAndNobodyHasChosen) {
    EXPECT_EQ(InstallationPreferences().language, AppLanguage::english);
    EXPECT_FALSE(InstallationPreferences().userSelectedLanguage);
}

TEST(InstallationPreferences, ChoosingRecordsThatTheUserChose) {
    InstallationPreferences preferences;
    preferences.choose(AppLanguage::english);
    EXPECT_EQ(preferences, (InstallationPreferences{AppLanguage::english, true}));
    preferences.choose(AppLanguage::arabic);
    EXPECT_EQ(preferences, (InstallationPreferences{AppLanguage::arabic, true}));
}

TEST(InstallationPreferences, EveryRecordComesBack) {
    for (const auto language : allLanguages) {
        for (const bool selected : {false, true}) {
            const InstallationPreferences preferences{language, selected};
            EXPECT_EQ(InstallationPreferences::fromJson(preferences.toJson()), preferences);
        }
    }
}

TEST(InstallationPreferences, TheDocumentHasTwoKeys) {
    EXPECT_EQ((InstallationPreferences{AppLanguage::hebrew, true}.toJson()),
              R"({"language":"he","userSelectedLanguage":true})");
}

TEST(InstallationPreferences, OtherKeysAndBlanksAreHarmless) {
    EXPECT_EQ(InstallationPreferences::fromJson(
                  "\n{ \"userSelectedLanguage\" : false, \"later\": [1, {}], \"language\": \"ar\" }\n"),
              (InstallationPreferences{AppLanguage::arabic, false}));
}

TEST(InstallationPreferences, ADocumentThatDoesNotFitInAnyPartIsNone) {
    for (const auto* document : {"",
                                 " ",
                                 "null",
                                 "[]",
                                 "\"en\"",
                                 "1",
                                 "{",
                                 "{}",
                                 R"({"language":"he"})",
                                 R"({"userSelectedLanguage":true})",
                                 R"({"language":"fr","userSelectedLanguage":true})",
                                 R"({"language":"HE","userSelectedLanguage":true})",
                                 R"({"language":1,"userSelectedLanguage":true})",
                                 R"({"language":null,"userSelectedLanguage":true})",
                                 R"({"language":"he","userSelectedLanguage":1})",
                                 R"({"language":"he","userSelectedLanguage":"true"})",
                                 R"({"language":"he","userSelectedLanguage":null})",
                                 R"({"language":"he","userSelectedLanguage":true)",
                                 R"({"language":"he","userSelectedLanguage":true}x)",
                                 R"({"Language":"he","userSelectedLanguage":true})",
                                 "{\"language\":\"\xFF\",\"userSelectedLanguage\":true}"}) {
        EXPECT_EQ(InstallationPreferences::fromJson(document), std::nullopt) << document;
    }
}

TEST(InstallationPreferences, ADeeplyNestedDocumentIsHarmless) {
    EXPECT_EQ(InstallationPreferences::fromJson(std::string(1'000'000, '[')), std::nullopt);
    EXPECT_EQ(InstallationPreferences::fromJson(std::string(200'000, '[') + std::string(200'000, ']')), std::nullopt);
}

} // namespace
} // namespace quillane::core

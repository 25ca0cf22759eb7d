// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/AppPreferences.hpp"

#include "core/preferences/DefaultsKeys.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quillane::core {
namespace {

using fakes::FakeUserDefaults;

PropertyListValue::Data record(std::string_view document) {
    const auto bytes = std::as_bytes(std::span(document));
    return std::vector(bytes.begin(), bytes.end());
}

/// The stored record as the next start of the program would read it.
std::optional<InstallationPreferences> stored(const FakeUserDefaults& defaults) {
    const auto data = defaults.data("QuillaneInstallationV1");
    return data ? InstallationPreferences::fromJson({reinterpret_cast<const char*>((*data)->data()), (*data)->size()})
                : std::nullopt;
}

TEST(AppPreferences, AFirstStartSavesAFreshRecord) {
    FakeUserDefaults defaults;
    const AppPreferences preferences(defaults);
    EXPECT_EQ(preferences.state(), InstallationPreferences());
    EXPECT_EQ(stored(defaults), InstallationPreferences());
    EXPECT_EQ(defaults.stringArray("AppleLanguages"), std::vector<std::string>{"en"});
}

TEST(AppPreferences, ALaterStartReadsTheRecord) {
    FakeUserDefaults defaults({{"QuillaneInstallationV1", record(R"({"language":"he","userSelectedLanguage":true})")}});
    const AppPreferences preferences(defaults);
    EXPECT_EQ(preferences.state(), (InstallationPreferences{AppLanguage::hebrew, true}));
    EXPECT_EQ(defaults.stringArray("AppleLanguages"), std::vector<std::string>{"he"});
}

TEST(AppPreferences, ASecondStartWritesNothing) {
    FakeUserDefaults defaults;
    { const AppPreferences first(defaults); }
    const int writes = defaults.writes;
    const AppPreferences second(defaults);
    EXPECT_EQ(defaults.writes, writes);
}

TEST(AppPreferences, ADamagedOrMistypedRecordIsReplacedByAFreshOne) {
    const std::vector<PropertyListValue> values{record("{"),
                                                record(""),
                                                record(R"({"language":"xx","userSelectedLanguage":true})"),
                                                R"({"language":"he","userSelectedLanguage":true})",
                                                true,
                                                PropertyListValue::Dictionary{{"language", "he"}}};
    for (const auto& value : values) {
        FakeUserDefaults defaults(
            {{"QuillaneInstallationV1", value}, {"AppleLanguages", PropertyListValue::Array{"he"}}});
        EXPECT_EQ(AppPreferences(defaults).state(), InstallationPreferences());
        EXPECT_EQ(stored(defaults), InstallationPreferences());
        EXPECT_EQ(defaults.stringArray("AppleLanguages"), std::vector<std::string>{"en"});
    }
}

TEST(AppPreferences, ChoosingSavesThenNotifiesTheSystemAndTheListeners) {
    FakeUserDefaults defaults;
    AppPreferences preferences(defaults);
    int notices = 0;
    const auto subscription = preferences.onChanged([&] {
        ++notices;
        EXPECT_EQ(preferences.state(), (InstallationPreferences{AppLanguage::arabic, true}));
        EXPECT_EQ(stored(defaults), preferences.state());
        EXPECT_EQ(defaults.stringArray("AppleLanguages"), std::vector<std::string>{"ar"});
    });
    preferences.choose(AppLanguage::arabic);
    EXPECT_EQ(notices, 1);
}

TEST(AppPreferences, AListenerThatHasLeftHearsNothing) {
    FakeUserDefaults defaults;
    AppPreferences preferences(defaults);
    int notices = 0;
    {
        const auto subscription = preferences.onChanged([&] { ++notices; });
    }
    preferences.choose(AppLanguage::arabic);
    EXPECT_EQ(notices, 0);
}

TEST(AppPreferences, AChoiceLastsUntilTheNextStart) {
    FakeUserDefaults defaults;
    AppPreferences(defaults).choose(AppLanguage::hebrew);
    EXPECT_EQ(AppPreferences(defaults).state(), (InstallationPreferences{AppLanguage::hebrew, true}));
}

} // namespace
} // namespace quillane::core

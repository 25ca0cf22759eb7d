// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/FeatureOptions.hpp"

#include "core/preferences/UserDefaults.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

namespace quillane::core {
namespace {

using fakes::FakeUserDefaults;

constexpr std::array keys{"ShiftEnglishEnabled", "LanguageSwitchEnabled", "WritingDirectionEnabled",
                          "KeepAwakeEnabled",    "ExcludeScreenSharing",  "AllFeaturesPaused"};

FeatureOptions optionsOf(unsigned bits) {
    return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0, (bits & 16) != 0, (bits & 32) != 0};
}

TEST(FeatureOptions, AnEmptyStoreGivesTheInitialValues) {
    const auto options = FeatureOptions::load(FakeUserDefaults());
    EXPECT_TRUE(options.shiftEnglish);
    EXPECT_TRUE(options.languageSwitch);
    EXPECT_TRUE(options.writingDirection);
    EXPECT_FALSE(options.keepAwake);
    EXPECT_TRUE(options.excludeScreenSharing);
    EXPECT_FALSE(options.paused);
}

TEST(FeatureOptions, EachFieldHasItsKey) {
    for (unsigned field = 0; field < keys.size(); ++field) {
        FakeUserDefaults defaults;
        optionsOf(1U << field).save(defaults);
        for (unsigned other = 0; other < keys.size(); ++other) {
            EXPECT_EQ(defaults.boolean(keys[other]), field == other) << keys[other];
        }
    }
}

TEST(FeatureOptions, EveryCombinationComesBack) {
    for (unsigned bits = 0; bits < 64; ++bits) {
        FakeUserDefaults defaults;
        optionsOf(bits).save(defaults);
        EXPECT_EQ(FeatureOptions::load(defaults), optionsOf(bits)) << bits;
    }
}

TEST(FeatureOptions, SavesAllSixInOneWrite) {
    FakeUserDefaults defaults;
    FeatureOptions().save(defaults);
    EXPECT_EQ(defaults.values.size(), 6U);
    EXPECT_EQ(defaults.writes, 1);
}

TEST(FeatureOptions, AnythingButABooleanGivesTheInitialValue) {
    const PropertyListValue::Array values{std::int64_t{0},
                                          std::int64_t{1},
                                          0.0,
                                          1.0,
                                          "YES",
                                          "false",
                                          "",
                                          PropertyListValue::Data({std::byte{1}}),
                                          PropertyListValue::Date{0},
                                          PropertyListValue::Array{true},
                                          PropertyListValue::Dictionary{{"a", true}}};
    for (const auto& value : values) {
        for (const auto* key : keys) {
            EXPECT_EQ(FeatureOptions::load(FakeUserDefaults({{key, value}})), FeatureOptions()) << key;
        }
    }
}

TEST(FeatureOptions, AMistypedFieldLeavesTheOthersAsStored) {
    const FakeUserDefaults defaults({{"ShiftEnglishEnabled", "no"}, {"LanguageSwitchEnabled", false}});
    EXPECT_EQ(FeatureOptions::load(defaults), (FeatureOptions{.languageSwitch = false}));
}

TEST(FeatureOptions, WatchesTheKeyboardForAnyOfThreeFeaturesUnlessPaused) {
    for (unsigned bits = 0; bits < 64; ++bits) {
        EXPECT_EQ(optionsOf(bits).shouldMonitor(), (bits & 7) != 0 && (bits & 32) == 0) << bits;
    }
}

TEST(FeatureOptions, WatchesTheKeyboardForWritingDirectionAlone) {
    EXPECT_TRUE((FeatureOptions{.shiftEnglish = false, .languageSwitch = false}).shouldMonitor());
}

TEST(FeatureOptions, PausedStopsEverything) {
    const FeatureOptions options{.keepAwake = true, .paused = true};
    EXPECT_FALSE(options.shouldMonitor());
    EXPECT_FALSE(options.shouldKeepAwake());
}

TEST(FeatureOptions, KeepsAwakeWhenSwitchedOnAndNotPaused) {
    for (unsigned bits = 0; bits < 64; ++bits) {
        EXPECT_EQ(optionsOf(bits).shouldKeepAwake(), (bits & 40) == 8) << bits;
    }
}

} // namespace
} // namespace quillane::core

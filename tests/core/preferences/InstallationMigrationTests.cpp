// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/InstallationMigration.hpp"

#include "core/preferences/FeatureOptions.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillane::core {
namespace {

using fakes::FakeUserDefaults;
using Dictionary = PropertyListValue::Dictionary;

constexpr std::array migratedKeys{"QuillaneInstallationV1",  "AppleLanguages",          "ShiftEnglishEnabled",
                                  "LanguageSwitchEnabled",   "WritingDirectionEnabled", "AllFeaturesPaused",
                                  "SUEnableAutomaticChecks", "SUAutomaticallyUpdate"};

TEST(InstallationMigration, CopiesTheEightKeysUnchanged) {
    Dictionary legacy;
    for (const auto* key : migratedKeys) {
        legacy.emplace(key, std::string("value of ") + key);
    }
    FakeUserDefaults defaults;
    installationMigration::migratePreferences(defaults, legacy);
    auto expected = legacy;
    expected.emplace("QuillaneMigratedInstallation", true);
    expected.emplace("QuillaneIdentityMigrationV1", true);
    EXPECT_EQ(defaults.values, expected);
}

TEST(InstallationMigration, LeavesOtherKeysBehind) {
    FakeUserDefaults defaults;
    installationMigration::migratePreferences(
        defaults, Dictionary{{"KeepAwakeEnabled", true}, {"ExcludeScreenSharing", false}, {"Anything", "else"}});
    EXPECT_EQ(defaults.values,
              (Dictionary{{"QuillaneMigratedInstallation", true}, {"QuillaneIdentityMigrationV1", true}}));
    EXPECT_EQ(FeatureOptions::load(defaults), FeatureOptions());
}

TEST(InstallationMigration, NeverOverwritesAValueOfThisEdition) {
    for (const auto* key : migratedKeys) {
        FakeUserDefaults defaults({{key, true}});
        installationMigration::migratePreferences(defaults, Dictionary{{key, false}});
        EXPECT_EQ(defaults.boolean(key), true) << key;
        EXPECT_EQ(defaults.boolean("QuillaneMigratedInstallation"), true);
    }
}

TEST(InstallationMigration, KeepsAValueOfThisEditionEvenWhenMistyped) {
    FakeUserDefaults defaults(Dictionary{{"ShiftEnglishEnabled", "yes"}});
    installationMigration::migratePreferences(defaults, Dictionary{{"ShiftEnglishEnabled", false}});
    EXPECT_EQ(defaults.string("ShiftEnglishEnabled"), "yes");
}

TEST(InstallationMigration, WithoutAPreviousEditionOnlyTheMarkerIsSet) {
    FakeUserDefaults defaults;
    installationMigration::migratePreferences(defaults, std::nullopt);
    EXPECT_EQ(defaults.values, (Dictionary{{"QuillaneIdentityMigrationV1", true}}));
}

TEST(InstallationMigration, AnEmptyPreviousEditionCountsAsMigrated) {
    FakeUserDefaults defaults;
    installationMigration::migratePreferences(defaults, Dictionary{});
    EXPECT_EQ(defaults.boolean("QuillaneMigratedInstallation"), true);
}

TEST(InstallationMigration, ASecondRunReadsAndWritesNothing) {
    FakeUserDefaults defaults;
    installationMigration::migratePreferences(defaults, std::nullopt);
    const auto values = defaults.values;
    installationMigration::migratePreferences(defaults, Dictionary{{"ShiftEnglishEnabled", false}});
    EXPECT_EQ(defaults.values, values);
    EXPECT_EQ(defaults.writes, 1);
}

TEST(InstallationMigration, AMarkerThatIsNotTrueDoesNotCount) {
    for (const PropertyListValue& marker : std::vector<PropertyListValue>{false, "true", std::int64_t{1}}) {
        FakeUserDefaults defaults({{"QuillaneIdentityMigrationV1", marker}});
        installationMigration::migratePreferences(defaults, Dictionary{{"ShiftEnglishEnabled", false}});
        EXPECT_EQ(defaults.boolean("ShiftEnglishEnabled"), false);
        EXPECT_EQ(defaults.boolean("QuillaneIdentityMigrationV1"), true);
    }
}

class LoadStateTest : public ::testing::Test {
protected:
    std::string load() {
        return installationMigration::loadState([this] { return step("read current", current_); },
                                                [this] { return step("read legacy", legacy_); },
                                                [this](const std::string& state) {
                                                    step("write", current_);
                                                    current_ = state;
                                                },
                                                [this] { return *step("create", created_); });
    }

    std::optional<std::string> step(const std::string& name, const std::optional<std::string>& result) {
        steps_.push_back(name);
        if (name == failing_) {
            throw std::runtime_error(name);
        }
        return result;
    }

    using Steps = std::vector<std::string>;

    std::optional<std::string> current_;
    std::optional<std::string> legacy_;
    std::optional<std::string> created_ = "created";
    std::string failing_;
    Steps steps_;
};

TEST_F(LoadStateTest, TheCurrentCopyIsAllThatIsRead) {
    current_ = "current";
    legacy_ = "legacy";
    EXPECT_EQ(load(), "current");
    EXPECT_EQ(steps_, (Steps{"read current"}));
}

TEST_F(LoadStateTest, ALegacyCopyBecomesTheCurrentOne) {
    legacy_ = "legacy";
    EXPECT_EQ(load(), "legacy");
    EXPECT_EQ(current_, "legacy");
    EXPECT_EQ(steps_, (Steps{"read current", "read legacy", "write"}));
}

TEST_F(LoadStateTest, WithNeitherANewOneIsCreatedAndWritten) {
    EXPECT_EQ(load(), "created");
    EXPECT_EQ(current_, "created");
    EXPECT_EQ(steps_, (Steps{"read current", "read legacy", "create", "write"}));
}

TEST_F(LoadStateTest, AnErrorPassesThroughAndEndsIt) {
    const std::vector<Steps> orders{{"read current"},
                                    {"read current", "read legacy"},
                                    {"read current", "read legacy", "create"},
                                    {"read current", "read legacy", "create", "write"}};
    for (const auto& order : orders) {
        failing_ = order.back();
        steps_.clear();
        EXPECT_THROW(load(), std::runtime_error) << failing_;
        EXPECT_EQ(steps_, order);
        EXPECT_EQ(current_, std::nullopt);
    }
}

} // namespace
} // namespace quillane::core

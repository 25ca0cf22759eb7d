// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/VaultKey.hpp"
#include "core/localization/AppLanguage.hpp"
#include "core/propertylist/PropertyList.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <span>
#include <string>
#include <vector>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using Dictionary = PropertyListValue::Dictionary;
using Array = PropertyListValue::Array;

constexpr std::size_t maximumBytes = 1 << 20;
const std::filesystem::path resources = QUILLANE_MACOS_RESOURCES;

std::string readText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Dictionary readDictionary(const std::filesystem::path& file) {
    const auto text = readText(file);
    const auto list = parsePropertyList(std::as_bytes(std::span(text)), maximumBytes);
    const auto* dictionary = list ? list->as<Dictionary>() : nullptr;
    EXPECT_NE(dictionary, nullptr) << file;
    return dictionary != nullptr ? *dictionary : Dictionary();
}

std::vector<std::string> keysOf(const Dictionary& dictionary) {
    std::vector<std::string> keys;
    std::ranges::transform(dictionary, std::back_inserter(keys), [](const auto& entry) { return entry.first; });
    return keys;
}

class InformationTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string text(const std::string& key) const { return textOf(information_, key); }

    [[nodiscard]] static std::string textOf(const Dictionary& dictionary, const std::string& key) {
        const auto found = dictionary.find(key);
        const auto* value = found != dictionary.end() ? found->second.as<std::string>() : nullptr;
        return value != nullptr ? *value : "(none)";
    }

    [[nodiscard]] Dictionary service() const {
        const auto* services = information_.at("NSServices").as<Array>();
        const auto* only = services != nullptr && services->size() == 1 ? services->front().as<Dictionary>() : nullptr;
        return only != nullptr ? *only : Dictionary();
    }

    Dictionary information_ = readDictionary(QUILLANE_INFORMATION);
};

TEST_F(InformationTest, HasTheseKeysAndNoOthers) {
    EXPECT_THAT(keysOf(information_),
                ElementsAre("CFBundleDevelopmentRegion", "CFBundleExecutable", "CFBundleIconFile", "CFBundleIdentifier",
                            "CFBundleInfoDictionaryVersion", "CFBundleLocalizations", "CFBundleName",
                            "CFBundlePackageType", "CFBundleShortVersionString", "CFBundleVersion",
                            "LSApplicationCategoryType", "LSMinimumSystemVersion", "LSUIElement",
                            "NSHighResolutionCapable", "NSHumanReadableCopyright", "NSLocalNetworkUsageDescription",
                            "NSPrincipalClass", "NSServices", "SUFeedURL", "SUScheduledCheckInterval"));
}

TEST_F(InformationTest, NamesTheApplicationAsTheCodeDoes) {
    EXPECT_EQ(text("CFBundleIdentifier"), "com.quillane.app");
    EXPECT_EQ(vaultKeyService, text("CFBundleIdentifier") + ".clipboard");
    EXPECT_EQ(text("CFBundleName"), "Quillane");
    EXPECT_EQ(text("CFBundleExecutable"), "quillane");
    EXPECT_EQ(text("CFBundlePackageType"), "APPL");
    EXPECT_EQ(text("NSPrincipalClass"), "NSApplication");
}

TEST_F(InformationTest, CarriesTheVersionThatIsBuilt) {
    EXPECT_EQ(text("CFBundleShortVersionString"), QUILLANE_VERSION);
    EXPECT_TRUE(std::regex_match(text("CFBundleVersion"), std::regex("[0-9]+(\\.[0-9]+){0,2}")));
}

TEST_F(InformationTest, IsAnAgentForMacOS13) {
    const auto* agent = information_.at("LSUIElement").as<bool>();
    ASSERT_NE(agent, nullptr);
    EXPECT_TRUE(*agent);
    EXPECT_EQ(text("LSMinimumSystemVersion"), "13.0");
}

TEST_F(InformationTest, HasTheThreeLanguages) {
    const auto* languages = information_.at("CFBundleLocalizations").as<Array>();
    ASSERT_NE(languages, nullptr);
    ASSERT_EQ(languages->size(), allLanguages.size());
    for (const auto language : allLanguages) {
        EXPECT_THAT(*languages, ::testing::Contains(PropertyListValue(std::string(languageID(language)))));
        EXPECT_TRUE(std::filesystem::is_directory(resources / (std::string(languageID(language)) + ".lproj")));
    }
}

TEST_F(InformationTest, OffersTheServiceThatTheProviderAnswers) {
    const auto entry = service();
    EXPECT_EQ(textOf(entry, "NSMessage"), "share"); // the provider's method is share:userData:error:
    EXPECT_EQ(textOf(entry, "NSPortName"), text("CFBundleExecutable")); // AppKit registers the name of the process
    EXPECT_EQ(entry.at("NSSendFileTypes"), PropertyListValue(Array{PropertyListValue("public.data")}));
    EXPECT_FALSE(entry.contains("NSReturnTypes"));
}

TEST_F(InformationTest, UpdatesComeFromAnHttpsAddressEverySixHours) {
    EXPECT_TRUE(text("SUFeedURL").starts_with("https://"));
    EXPECT_EQ(information_.at("SUScheduledCheckInterval"), PropertyListValue(std::int64_t{21600}));
}

TEST_F(InformationTest, OnlyABuildWithAnUpdateKeyCarriesOne) {
    EXPECT_FALSE(information_.contains("SUPublicEDKey"));
    auto updated = readDictionary(QUILLANE_UPDATED_INFORMATION);
    EXPECT_EQ(textOf(updated, "SUPublicEDKey"), "a key that verifies nothing");
    updated.erase("SUPublicEDKey");
    EXPECT_EQ(updated, information_);
}

TEST_F(InformationTest, EveryPlaceholderWasFilledIn) {
    EXPECT_EQ(readText(QUILLANE_INFORMATION).find('@'), std::string::npos);
}

TEST(Entitlements, AskForNothingBeyondTheHardenedRuntime) {
    const auto entitlements = readDictionary(resources / "Quillane.entitlements");
    EXPECT_EQ(entitlements, (Dictionary{{"com.apple.security.app-sandbox", PropertyListValue(false)}}));
}

/// The texts that the system itself shows for the application, by key.
std::map<std::string, std::string> readStrings(const std::filesystem::path& file) {
    const auto text = readText(file);
    const std::regex row("^\"([^\"]+)\" = \"([^\"]+)\";$", std::regex::multiline);
    std::map<std::string, std::string> rows;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), row); it != std::sregex_iterator(); ++it) {
        rows[(*it)[1]] = (*it)[2];
    }
    return rows;
}

class SystemTextsTest : public InformationTest, public ::testing::WithParamInterface<AppLanguage> {
protected:
    [[nodiscard]] static std::map<std::string, std::string> strings(const std::string& name) {
        return readStrings(resources / (std::string(languageID(GetParam())) + ".lproj") / (name + ".strings"));
    }
};

TEST_P(SystemTextsTest, TheServiceHasATitle) {
    const auto title = textOf(*service().at("NSMenuItem").as<Dictionary>(), "default");
    const auto rows = strings("ServicesMenu");
    ASSERT_TRUE(rows.contains(title));
    EXPECT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.at(title) == title, GetParam() == AppLanguage::english);
}

TEST_P(SystemTextsTest, TheReasonForTheLocalNetworkIsGiven) {
    const auto rows = strings("InfoPlist");
    ASSERT_TRUE(rows.contains("NSLocalNetworkUsageDescription"));
    EXPECT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.at("NSLocalNetworkUsageDescription") == text("NSLocalNetworkUsageDescription"),
              GetParam() == AppLanguage::english);
}

INSTANTIATE_TEST_SUITE_P(In, SystemTextsTest, ::testing::ValuesIn(allLanguages),
                         [](const auto& parameter) { return std::string(languageID(parameter.param)); });

} // namespace
} // namespace quillane::core

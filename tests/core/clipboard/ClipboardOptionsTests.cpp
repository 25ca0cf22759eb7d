// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardOptions.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillane::core {
namespace {

std::optional<ClipboardOptions> decode(std::string_view json) {
    return decodeClipboardOptions(std::as_bytes(std::span(json)));
}

nlohmann::json encodedJson(const ClipboardOptions& options) {
    const auto bytes = encodeClipboardOptions(options);
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    return nlohmann::json::parse(text, text + bytes.size());
}

TEST(ClipboardOptions, DefaultsAreOffWithEverythingKept) {
    const auto expected = nlohmann::json::parse(R"({"enabled":false,"saveText":true,"saveImages":true,"saveFiles":true,
        "persist":true,"limit":200,"storageMB":250,"popupAtCursor":true,"pinsOnTop":true,"imageHeight":60,
        "previewDelay":700,"sortByLastCopy":true,"ignoredApps":[]})");
    EXPECT_EQ(encodedJson({}), expected);
}

TEST(ClipboardOptions, EveryFieldSurvivesEncoding) {
    const ClipboardOptions options{.enabled = true,
                                   .saveText = false,
                                   .saveImages = false,
                                   .saveFiles = false,
                                   .persist = false,
                                   .limit = 3,
                                   .storageMB = -7,
                                   .popupAtCursor = false,
                                   .pinsOnTop = false,
                                   .imageHeight = 45,
                                   .previewDelay = 123'456'789'012,
                                   .sortByLastCopy = false,
                                   .ignoredApps = {"com.example.a", "\xD7\xA9\xD7\x9C\"\\"}};
    EXPECT_EQ(decodeClipboardOptions(encodeClipboardOptions(options)), options);
}

TEST(ClipboardOptions, AnyMissingKeyOfTheFirstVersionMakesThemUndecodable) {
    const auto complete = encodedJson({});
    ASSERT_EQ(complete.size(), 13U);
    ASSERT_TRUE(decode(complete.dump()).has_value());
    for (const auto& [key, value] : complete.items()) {
        auto json = complete;
        json.erase(key);
        EXPECT_FALSE(decode(json.dump()).has_value()) << key;
    }
}

TEST(ClipboardOptions, AnyKeyOfAnotherTypeMakesThemUndecodable) {
    const auto complete = encodedJson({});
    for (const auto& [key, value] : complete.items()) {
        for (const auto* wrong : {"null", "\"x\"", "{}", "[1]", "1.5", "18446744073709551615"}) {
            auto json = complete;
            json[key] = nlohmann::json::parse(wrong);
            EXPECT_FALSE(decode(json.dump()).has_value()) << key << " " << wrong;
        }
        auto json = complete;
        json[key] = value.is_boolean() ? nlohmann::json(1) : nlohmann::json(true);
        EXPECT_FALSE(decode(json.dump()).has_value()) << key;
    }
}

TEST(ClipboardOptions, ReadsAWholeNumberHoweverItIsWritten) {
    auto json = encodedJson({});
    json["limit"] = nlohmann::json::parse("3e2");
    EXPECT_EQ(decode(json.dump())->limit, 300);
}

TEST(ClipboardOptions, PassesOverUnknownKeys) {
    auto json = encodedJson({.limit = 77});
    json["future"] = {1, 2};
    EXPECT_EQ(decode(json.dump())->limit, 77);
}

TEST(ClipboardOptions, AnythingButAnObjectIsUndecodable) {
    for (const auto* text : {"", "null", "[]", "{", "{}", "true", "\xff\xfe", "{\"enabled\":true}x"}) {
        EXPECT_FALSE(decode(text).has_value()) << text;
    }
    EXPECT_FALSE(decode(std::string(100'000, '[')).has_value());
    const auto json = encodedJson({}).dump();
    for (std::size_t length = 0; length < json.size(); ++length) {
        EXPECT_FALSE(decode(std::string_view(json).substr(0, length)).has_value()) << length;
    }
}

TEST(ClipboardOptions, LimitActsWithinItsRangeAndStaysAsWritten) {
    EXPECT_EQ(ClipboardOptions{.limit = 3}.safeLimit(), 10U);
    EXPECT_EQ(ClipboardOptions{.limit = 10}.safeLimit(), 10U);
    EXPECT_EQ(ClipboardOptions{.limit = 640}.safeLimit(), 640U);
    EXPECT_EQ(ClipboardOptions{.limit = 5'000}.safeLimit(), 1'000U);
    EXPECT_EQ(ClipboardOptions{.limit = INT64_MIN}.safeLimit(), 10U);
    const ClipboardOptions stored{.limit = 5'000};
    EXPECT_EQ(decodeClipboardOptions(encodeClipboardOptions(stored))->limit, 5'000);
}

TEST(ClipboardOptions, StorageActsWithinItsRange) {
    EXPECT_EQ(ClipboardOptions{.storageMB = 0}.byteLimit(), 26'214'400U);
    EXPECT_EQ(ClipboardOptions{.storageMB = 250}.byteLimit(), 262'144'000U);
    EXPECT_EQ(ClipboardOptions{.storageMB = 2'000}.byteLimit(), 1'048'576'000U);
    EXPECT_EQ(ClipboardOptions{.storageMB = INT64_MAX}.byteLimit(), 1'048'576'000U);
}

TEST(ClipboardOptions, EachKindHasItsSwitch) {
    for (const auto kind : allClipboardKinds) {
        ClipboardOptions options{.saveText = false, .saveImages = false, .saveFiles = false};
        EXPECT_FALSE(options.accepts(kind));
        (kind == ClipboardKind::text    ? options.saveText
         : kind == ClipboardKind::image ? options.saveImages
                                        : options.saveFiles) = true;
        EXPECT_TRUE(options.accepts(kind));
        EXPECT_EQ(clipboardKind(rawValue(kind)), kind);
    }
    EXPECT_EQ(clipboardKind("Text"), std::nullopt);
}

} // namespace
} // namespace quillane::core

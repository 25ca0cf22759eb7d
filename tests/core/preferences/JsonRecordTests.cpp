// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/JsonRecord.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace quillane::core {
namespace {

/// A record whose second version has a new number and a new list.
struct Record {
    bool enabled = false;
    std::int64_t limit = 200;
    std::vector<std::string> names = {"default"};

    bool operator==(const Record&) const = default;
};

void describe(auto& fields, auto& record) {
    fields.required("enabled", record.enabled);
    fields.added("limit", record.limit);
    fields.added("names", record.names);
}

std::optional<Record> read(const char* text) {
    const auto json = nlohmann::json::parse(text);
    JsonRecordReader fields(json);
    Record record;
    describe(fields, record);
    return fields.isIntact() ? std::optional(record) : std::nullopt;
}

TEST(JsonRecord, MissingAddedKeysTakeTheirDefaults) {
    EXPECT_EQ(read(R"({"enabled":true})"), (Record{.enabled = true}));
    EXPECT_EQ(read(R"({"enabled":true,"limit":3})"), (Record{.enabled = true, .limit = 3}));
}

TEST(JsonRecord, MissingKeyOfTheFirstVersionIsDamage) {
    EXPECT_EQ(read(R"({"limit":3,"names":[]})"), std::nullopt);
    EXPECT_EQ(read("{}"), std::nullopt);
}

TEST(JsonRecord, AddedKeyOfAnotherTypeIsDamage) {
    EXPECT_EQ(read(R"({"enabled":true,"limit":"3"})"), std::nullopt);
    EXPECT_EQ(read(R"({"enabled":true,"limit":null})"), std::nullopt);
    EXPECT_EQ(read(R"({"enabled":true,"names":[1]})"), std::nullopt);
}

TEST(JsonRecord, AnythingButAnObjectIsDamage) {
    EXPECT_EQ(read("[]"), std::nullopt);
    EXPECT_EQ(read("null"), std::nullopt);
}

TEST(JsonRecord, WritesEveryField) {
    const Record record{true, 3, {"one"}};
    JsonRecordWriter fields;
    describe(fields, record);
    EXPECT_EQ(fields.json(), nlohmann::json::parse(R"({"enabled":true,"limit":3,"names":["one"]})"));
    EXPECT_EQ(read(fields.json().dump().c_str()), record);
}

} // namespace
} // namespace quillane::core

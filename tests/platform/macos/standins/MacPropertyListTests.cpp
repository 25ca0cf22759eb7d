// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/foundation/MacPropertyList.hpp"

#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>

namespace quillane {
namespace {

using Value = core::PropertyListValue;

class MacPropertyListTest : public ::testing::Test {
protected:
    standin::Mac mac;
};

TEST_F(MacPropertyListTest, ValuesComeBackAsTheyWere) {
    const Value::Data bytes(std::vector<std::byte>{std::byte{0}, std::byte{255}});
    const std::vector<Value> values{true,
                                    false,
                                    std::int64_t{0},
                                    std::int64_t{1},
                                    std::numeric_limits<std::int64_t>::min(),
                                    std::numeric_limits<std::int64_t>::max(),
                                    0.5,
                                    1.0,
                                    "",
                                    "שלום",
                                    bytes,
                                    Value::Data(),
                                    Value::Date{-1.5},
                                    Value::Array{},
                                    Value::Dictionary{},
                                    Value::Array{true, Value::Array{"a", std::int64_t{2}}},
                                    Value::Dictionary{{"a", bytes}, {"b", Value::Dictionary{{"c", false}}}}};
    for (const auto& value : values) {
        EXPECT_EQ(propertyListValue(propertyListObject(value).get()), value) << value.storage().index();
    }
    EXPECT_EQ(propertyListValue(propertyListObject(Value::Array(values)).get()), Value(Value::Array(values)));
}

TEST_F(MacPropertyListTest, WholeNumberBeyond64BitsBecomesAFraction) {
    EXPECT_EQ(propertyListValue(standin::hugeNumber().get()), Value(18446744073709551615.0));
}

TEST_F(MacPropertyListTest, WhatNoPropertyListHoldsIsNone) {
    EXPECT_FALSE(propertyListValue(nullptr));
    EXPECT_FALSE(propertyListValue(kCFNull));
    const auto foreign = standin::foreignObject();
    EXPECT_FALSE(propertyListValue(foreign.get()));
    EXPECT_FALSE(propertyListValue(standin::list({standin::value(1), foreign}).get()));
    EXPECT_FALSE(propertyListValue(standin::dictionary({{standin::value("a"), foreign}}).get()));
    EXPECT_FALSE(propertyListValue(standin::dictionary({{standin::value(1), standin::value("a")}}).get()));
}

} // namespace
} // namespace quillane

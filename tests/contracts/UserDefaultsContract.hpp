// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace quillane::testing {

/// What every UserDefaults promises. The driver is constructed for each test, with nothing stored, and has:
///
///     core::UserDefaults& defaults();
///     void restart();     // as when the program ends and starts again; `defaults` is another object afterwards
template <typename Driver>
class UserDefaultsContract : public ::testing::Test {
protected:
    using Value = core::PropertyListValue;

    /// Values of every type that a store must distinguish, in pairs that are easily confused.
    static std::vector<Value> values() {
        using Limits = std::numeric_limits<std::int64_t>;
        return {true,
                false,
                std::int64_t{1},
                std::int64_t{0},
                std::int64_t{-1},
                Limits::min(),
                Limits::max(),
                1.0,
                0.0,
                0.1,
                "",
                "1",
                "true",
                "שלום \U0001F600 مرحبا",
                Value::Data(),
                Value::Data({std::byte{0}, std::byte{255}}),
                Value::Date{86400.5},
                Value::Array{},
                Value::Array{true, std::int64_t{1}, "a", Value::Array{Value(0.5)}},
                Value::Dictionary{},
                Value::Dictionary{{"", true}, {"a", Value::Dictionary{{"b", "c"}}}}};
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, AMissingValueIsAbsent) {
    auto& defaults = this->driver.defaults();
    EXPECT_EQ(defaults.object("Missing"), std::nullopt);
    EXPECT_EQ(defaults.boolean("Missing"), std::nullopt);
    EXPECT_EQ(defaults.string("Missing"), std::nullopt);
    EXPECT_EQ(defaults.data("Missing"), std::nullopt);
    EXPECT_EQ(defaults.stringArray("Missing"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, EveryTypeComesBackExactly) {
    for (const auto& value : this->values()) {
        this->driver.defaults().setObject("Key", value);
        EXPECT_EQ(this->driver.defaults().object("Key"), value);
    }
}

TYPED_TEST_P(UserDefaultsContract, EveryTypeOutlivesTheProgram) {
    core::PropertyListValue::Dictionary all;
    for (const auto& value : this->values()) {
        all.emplace("Key " + std::to_string(all.size()), value);
    }
    this->driver.defaults().setObjects(all);
    this->driver.restart();
    for (const auto& [key, value] : all) {
        EXPECT_EQ(this->driver.defaults().object(key), value) << key;
    }
}

TYPED_TEST_P(UserDefaultsContract, NoteIsThereAtOnceAndAfterTheProgramHasEnded) {
    this->driver.defaults().note("Note", "one");
    this->driver.defaults().note("Note", "two");
    EXPECT_EQ(this->driver.defaults().string("Note"), "two");
    this->driver.restart();
    EXPECT_EQ(this->driver.defaults().string("Note"), "two");
}

TYPED_TEST_P(UserDefaultsContract, AMistypedValueIsAbsent) {
    for (const auto& value : this->values()) {
        auto& defaults = this->driver.defaults();
        defaults.setObject("Key", value);
        EXPECT_EQ(defaults.boolean("Key").has_value(), value.template as<bool>() != nullptr);
        EXPECT_EQ(defaults.string("Key").has_value(), value.template as<std::string>() != nullptr);
        EXPECT_EQ(defaults.data("Key").has_value(), value.template as<core::PropertyListValue::Data>() != nullptr);
    }
}

TYPED_TEST_P(UserDefaultsContract, AnArrayOfStringsHoldsNothingElse) {
    using Array = core::PropertyListValue::Array;
    auto& defaults = this->driver.defaults();
    defaults.setObject("Key", Array{"he", "en"});
    EXPECT_EQ(defaults.stringArray("Key"), (std::vector<std::string>{"he", "en"}));
    defaults.setObject("Key", Array{});
    EXPECT_EQ(defaults.stringArray("Key"), std::vector<std::string>());
    defaults.setObject("Key", Array{"he", true});
    EXPECT_EQ(defaults.stringArray("Key"), std::nullopt);
    defaults.setObject("Key", "he");
    EXPECT_EQ(defaults.stringArray("Key"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, SettingSeveralLeavesTheOthers) {
    auto& defaults = this->driver.defaults();
    defaults.setObject("First", "1");
    defaults.setObject("Second", "2");
    defaults.setObjects({{"Second", true}, {"Third", "3"}});
    EXPECT_EQ(defaults.string("First"), "1");
    EXPECT_EQ(defaults.boolean("Second"), true);
    EXPECT_EQ(defaults.string("Third"), "3");
}

TYPED_TEST_P(UserDefaultsContract, SettingNothingChangesNothing) {
    auto& defaults = this->driver.defaults();
    defaults.setObject("Key", true);
    defaults.setObjects({});
    EXPECT_EQ(defaults.boolean("Key"), true);
}

TYPED_TEST_P(UserDefaultsContract, ARemovedValueIsAbsentForGood) {
    this->driver.defaults().setObjects({{"Key", true}, {"Other", false}});
    this->driver.defaults().removeObject("Key");
    this->driver.defaults().removeObject("Missing");
    EXPECT_EQ(this->driver.defaults().object("Key"), std::nullopt);
    this->driver.restart();
    EXPECT_EQ(this->driver.defaults().object("Key"), std::nullopt);
    EXPECT_EQ(this->driver.defaults().boolean("Other"), false);
}

TYPED_TEST_P(UserDefaultsContract, KeysAreComparedExactly) {
    auto& defaults = this->driver.defaults();
    defaults.setObject("Key", true);
    EXPECT_EQ(defaults.object("key"), std::nullopt);
    EXPECT_EQ(defaults.object("Key "), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, AMissingValueIsAbsent, EveryTypeComesBackExactly,
                            EveryTypeOutlivesTheProgram, NoteIsThereAtOnceAndAfterTheProgramHasEnded,
                            AMistypedValueIsAbsent, AnArrayOfStringsHoldsNothingElse, SettingSeveralLeavesTheOthers,
                            SettingNothingChangesNothing, ARemovedValueIsAbsentForGood, KeysAreComparedExactly);

} // namespace quillane::testing

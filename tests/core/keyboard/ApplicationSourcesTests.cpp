// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ApplicationSources.hpp"

#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillane::core {
namespace {

const std::vector<std::string> enabled{"English", "Hebrew", "Arabic"};

/// The rule with a memory and the settings of a test.
struct ApplicationSourcesTest : ::testing::Test {
    [[nodiscard]] std::optional<std::string> onReturn(std::string_view application, std::string_view current) const {
        return sourceOnReturn(options, memory, application, current, enabled);
    }

    ApplicationSourceOptions options{.enabled = true, .fixed = {}};
    SourceMemory memory;
};

TEST_F(ApplicationSourcesTest, TheSourceThatWasLastUsedComesBack) {
    memory.note("mail", "Hebrew");
    memory.note("editor", "English");
    memory.note("mail", "Arabic");
    EXPECT_EQ(onReturn("mail", "English"), "Arabic");
    EXPECT_EQ(onReturn("editor", "Arabic"), "English");
}

TEST_F(ApplicationSourcesTest, NothingChangesWhereNothingIsKnownOrNeeded) {
    memory.note("mail", "Hebrew");
    EXPECT_EQ(onReturn("editor", "English"), std::nullopt);
    EXPECT_EQ(onReturn("mail", "Hebrew"), std::nullopt);
    options.enabled = false;
    options.fixed = {{"editor", "Hebrew"}};
    EXPECT_EQ(onReturn("mail", "English"), std::nullopt);
    EXPECT_EQ(onReturn("editor", "English"), std::nullopt);
}

TEST_F(ApplicationSourcesTest, AFixedSourceIsStrongerThanTheMemory) {
    memory.note("terminal", "Hebrew");
    options.fixed = {{"terminal", "English"}};
    EXPECT_EQ(onReturn("terminal", "Hebrew"), "English");
    EXPECT_EQ(onReturn("terminal", "English"), std::nullopt);
}

TEST_F(ApplicationSourcesTest, ASourceThatIsNotEnabledAnyMoreIsNotSelected) {
    memory.note("mail", "Yiddish");
    options.fixed = {{"terminal", "Persian"}};
    EXPECT_EQ(onReturn("mail", "English"), std::nullopt);
    EXPECT_EQ(onReturn("terminal", "English"), std::nullopt);
}

TEST_F(ApplicationSourcesTest, TheMemoryKeepsThoseThatWereUsedLast) {
    memory.note("first", "Hebrew");
    memory.note("second", "Hebrew");
    for (std::size_t count = 2; count < SourceMemory::maximum; ++count) {
        memory.note("application " + std::to_string(count), "English");
    }
    memory.note("first", "Arabic");
    memory.note("one more", "Hebrew");
    EXPECT_EQ(memory.sourceOf("first"), "Arabic");
    EXPECT_EQ(memory.sourceOf("second"), std::nullopt);
    EXPECT_EQ(memory.sourceOf("one more"), "Hebrew");
}

TEST(ApplicationSourceOptions, AreOffWithoutExceptionsAtFirst) {
    const fakes::FakeUserDefaults defaults;
    const auto options = ApplicationSourceOptions::load(defaults);
    EXPECT_FALSE(options.enabled);
    EXPECT_TRUE(options.fixed.empty());
}

TEST(ApplicationSourceOptions, AreReadAsTheyWereSaved) {
    fakes::FakeUserDefaults defaults;
    const ApplicationSourceOptions options{.enabled = true, .fixed = {{"terminal", "English"}, {"mail", "Hebrew"}}};
    options.save(defaults);
    EXPECT_EQ(ApplicationSourceOptions::load(defaults), options);
}

TEST(ApplicationSourceOptions, WhatIsMistypedIsLeftOut) {
    fakes::FakeUserDefaults defaults;
    defaults.setObject("ApplicationSourcesEnabled", PropertyListValue("yes"));
    defaults.setObject("ApplicationSourcesFixed",
                       PropertyListValue(PropertyListValue::Dictionary{{"mail", PropertyListValue("Hebrew")},
                                                                       {"editor", PropertyListValue(true)}}));
    const auto options = ApplicationSourceOptions::load(defaults);
    EXPECT_FALSE(options.enabled);
    EXPECT_EQ(options.fixed, (std::map<std::string, std::string>{{"mail", "Hebrew"}}));
    defaults.setObject("ApplicationSourcesFixed", PropertyListValue(std::int64_t{7}));
    EXPECT_TRUE(ApplicationSourceOptions::load(defaults).fixed.empty());
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Uuid.hpp"

#include "core/support/Date.hpp"

#include <gtest/gtest.h>

#include <set>

namespace quillane::core {
namespace {

TEST(Uuid, WritesTheCanonicalFormInUpperCase) {
    const auto uuid = Uuid::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->toString(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(Uuid::parse(uuid->toString()), uuid);
}

TEST(Uuid, RefusesEverythingElse) {
    for (const auto* text : {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5",
                             "E621E1F8-C36C-495A-93FC-0C247A3E6E5G", "E621E1F8-C36C-495A-93FC_0C247A3E6E5F",
                             "{E621E1F8-C36C-495A-93FC-0C247A3E6E5}", "../../../../../../../../etc/passwd///"}) {
        EXPECT_FALSE(Uuid::parse(text)) << text;
    }
}

TEST(Uuid, RandomOnesAreOfVersionFourAndDiffer) {
    std::set<Uuid> seen;
    for (int i = 0; i < 1'000; ++i) {
        const auto uuid = Uuid::random();
        EXPECT_EQ(uuid.toString()[14], '4');
        EXPECT_NE(std::string_view("89AB").find(uuid.toString()[19]), std::string_view::npos);
        EXPECT_TRUE(seen.insert(uuid).second);
    }
}

TEST(Uuid, IsOrderedAsItsText) {
    for (int i = 0; i < 1'000; ++i) {
        const auto a = Uuid::random();
        const auto b = Uuid::random();
        EXPECT_EQ(a < b, a.toString() < b.toString());
    }
}

TEST(Date, CountsFromTheReferenceDate) {
    EXPECT_EQ(dateOf(std::chrono::system_clock::from_time_t(978'307'200)), Date{0});
    EXPECT_EQ(dateOf(std::chrono::system_clock::from_time_t(0)), Date{-978'307'200});
}

} // namespace
} // namespace quillane::core

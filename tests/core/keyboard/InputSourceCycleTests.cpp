// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/InputSourceCycle.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane::core {
namespace {

using Ids = std::vector<std::string>;
using inputSourceCycle::nextID;

TEST(InputSourceCycle, GoesToTheNextAndWraps) {
    EXPECT_EQ(nextID("A", Ids({"A", "B", "C"})), "B");
    EXPECT_EQ(nextID("B", Ids({"A", "B", "C"})), "C");
    EXPECT_EQ(nextID("C", Ids({"A", "B", "C"})), "A");
}

TEST(InputSourceCycle, AnUnlistedSourceGoesToTheFirst) {
    EXPECT_EQ(nextID("X", Ids({"A", "B", "C"})), "A");
    EXPECT_EQ(nextID("", Ids({"A", "B", "C"})), "A");
}

TEST(InputSourceCycle, RepeatedSourcesCountOnce) {
    EXPECT_EQ(nextID("A", Ids({"A", "A"})), std::nullopt);
    EXPECT_EQ(nextID("A", Ids({"A", "B", "A", "C"})), "B");
    EXPECT_EQ(nextID("B", Ids({"A", "B", "A", "C"})), "C");
    EXPECT_EQ(nextID("C", Ids({"A", "B", "A", "C"})), "A");
}

TEST(InputSourceCycle, FewerThanTwoGiveNothing) {
    EXPECT_EQ(nextID("A", Ids{}), std::nullopt);
    EXPECT_EQ(nextID("A", Ids({"A"})), std::nullopt);
    EXPECT_EQ(nextID("X", Ids({"A"})), std::nullopt);
}

TEST(InputSourceCycle, TurnsThroughAllOfThem) {
    const Ids ids{"A", "B", "C", "D", "E"};
    std::string current = "A";
    Ids seen;
    for (std::size_t turn = 0; turn < ids.size(); ++turn) {
        seen.push_back(current);
        current = nextID(current, ids).value_or("");
    }
    EXPECT_EQ(seen, ids);
    EXPECT_EQ(current, "A");
}

} // namespace
} // namespace quillane::core

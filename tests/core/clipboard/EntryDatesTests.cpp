// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/EntryDates.hpp"

#include "core/clipboard/VaultTest.hpp"

#include <gmock/gmock.h>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::textEntry;

constexpr Date now{1'000};

std::vector<double> copyDates(const std::vector<ClipboardEntry>& entries) {
    std::vector<double> dates;
    for (const auto& entry : entries) {
        dates.push_back(entry.copiedAt.secondsSinceReferenceDate);
    }
    return dates;
}

TEST(EntryDates, NextIsThePresentUnlessAnEntryIsNewer) {
    EXPECT_EQ(entryDates::next({}, now), now);
    EXPECT_EQ(entryDates::next(std::vector{textEntry("a", 999)}, now), now);
    EXPECT_EQ(entryDates::next(std::vector{textEntry("a", 1'000)}, now), Date{1'000.001});
    EXPECT_EQ(entryDates::next(std::vector{textEntry("a", 5'000), textEntry("b", 2)}, now), Date{5'000.001});
}

TEST(EntryDates, NextIsAfterEveryDateOfCreationToo) {
    std::vector entries{textEntry("a", 5'000)};
    entries[0].copiedAt = Date{1};
    EXPECT_EQ(entryDates::next(entries, now), Date{5'000.001});
}

TEST(EntryDates, FutureComesDownInItsOrder) {
    std::vector entries{textEntry("a", 3'000), textEntry("b", 500), textEntry("c", 2'000), textEntry("d", 9'000)};
    const auto changed = entryDates::bringDown(entries, now);
    EXPECT_THAT(copyDates(entries), ElementsAre(1'000 - 0.001, 500, 1'000 - 0.001 - 0.001, 1'000));
    EXPECT_EQ(entries[3].createdAt, now);
    for (const auto i : {0U, 2U, 3U}) {
        EXPECT_THAT(changed, ::testing::Contains(entries[i].id));
    }
    EXPECT_THAT(changed, ::testing::Not(::testing::Contains(entries[1].id)));
}

TEST(EntryDates, WhatIsJustBeforeThePresentMakesRoom) {
    std::vector entries{textEntry("a", 999.9995), textEntry("b", 2'000), textEntry("c", 999.9995)};
    entries[0].id = Uuid{{2}};
    entries[2].id = Uuid{{1}}; // the smaller one is shown first
    entryDates::bringDown(entries, now);
    EXPECT_EQ(entries[1].copiedAt, now);
    EXPECT_LT(entries[2].copiedAt, entries[1].copiedAt);
    EXPECT_LT(entries[0].copiedAt, entries[2].copiedAt);
}

TEST(EntryDates, PastStaysAsItIs) {
    const std::vector entries{textEntry("a", 1'000), textEntry("b", 1'000), textEntry("c", 1)};
    auto same = entries;
    EXPECT_THAT(entryDates::bringDown(same, now), IsEmpty());
    EXPECT_EQ(same, entries);
}

} // namespace
} // namespace quillane::core

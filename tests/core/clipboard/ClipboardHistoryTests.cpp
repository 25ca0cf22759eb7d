// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardHistory.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "fakes/FakePasteboard.hpp"

#include <gmock/gmock.h>

#include <random>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

ClipboardEntry entryOf(std::string text, double copiedAt, std::size_t bytes = 1, std::string sourceName = "Notes") {
    static int unique = 0;
    auto data = fakes::bytesOf(std::to_string(++unique));
    data.resize(bytes);
    auto entry = ClipboardEntry::make(ClipboardKind::text, std::move(text), "com.example.notes", std::move(sourceName),
                                      {{{"public.utf8-plain-text", std::move(data)}}}, Date{copiedAt});
    entry.digest = std::to_string(unique);
    return entry;
}

ClipboardEntry pinnedOf(std::string text, double copiedAt, std::size_t bytes = 1) {
    auto entry = entryOf(std::move(text), copiedAt, bytes);
    entry.pinned = true;
    return entry;
}

std::vector<std::string> textsOf(const std::vector<ClipboardEntry>& entries) {
    std::vector<std::string> texts;
    for (const auto& entry : entries) {
        texts.push_back(*entry.text);
    }
    return texts;
}

TEST(ClipboardHistory, AppendsNewContent) {
    ClipboardHistory history;
    EXPECT_TRUE(history.insert(entryOf("b", 2), {}));
    EXPECT_TRUE(history.insert(entryOf("a", 1), {}));
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("b", "a"));
}

TEST(ClipboardHistory, RefusesAKindThatIsOffAndContentThatIsTooLargeOrEmpty) {
    ClipboardHistory history;
    EXPECT_FALSE(history.insert(entryOf("a", 1), {.saveText = false}));
    EXPECT_TRUE(history.insert(entryOf("most", 1, clipboardSnapshot::maximumBytes), {}));
    EXPECT_FALSE(history.insert(entryOf("more", 1, clipboardSnapshot::maximumBytes + 1), {}));
    auto withoutItems = entryOf("none", 1);
    withoutItems.items = ClipboardItems{};
    EXPECT_FALSE(history.insert(withoutItems, {}));
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("most"));
}

TEST(ClipboardHistory, EqualContentOnlyRenewsTheCopyDateOfTheFirst) {
    const auto pinned = pinnedOf("pinned", 1);
    ClipboardHistory history({pinned, entryOf("other", 2)});
    auto again = entryOf("again", 9);
    again.digest = pinned.digest;
    again.source = "com.example.other";
    EXPECT_TRUE(history.insert(again, {}));
    ASSERT_EQ(history.entries().size(), 2U);
    auto expected = pinned;
    expected.copiedAt = Date{9};
    EXPECT_EQ(history.entries()[0], expected);
    EXPECT_THAT(textsOf(history.filtered("", {.pinsOnTop = false})), ElementsAre("pinned", "other"));
}

TEST(ClipboardHistory, MergingAddsNewEntriesAndKeepsOneOfEqualContents) {
    const auto both = entryOf("both", 5);
    auto again = both;
    again.id = Uuid::random();
    again.copiedAt = Date{9};
    again.createdAt = Date{9};
    again.pinned = true;
    auto older = entryOf("older", 8);
    auto olderAgain = older;
    olderAgain.copiedAt = Date{2};
    ClipboardHistory history({entryOf("one", 1), both, older});
    const ClipboardHistory later({again, entryOf("two words", 7), olderAgain});
    EXPECT_THAT(history.merge(later), ElementsAre(both.id));
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("one", "both", "older", "two words"));
    auto expected = both;
    expected.copiedAt = Date{9};
    expected.pinned = true;
    EXPECT_EQ(history.entries()[1], expected);
    EXPECT_EQ(history.entries()[2], older);
    EXPECT_THAT(textsOf(history.filtered("words", {})), ElementsAre("two words"));
    EXPECT_THAT(history.merge(later), IsEmpty());
    EXPECT_EQ(history.entries().size(), 4U);
}

TEST(ClipboardHistory, ReportsWhenTrimmingHasRemovedTheNewEntry) {
    ClipboardHistory history;
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(history.insert(entryOf("new", 100 + i), {.limit = 10}));
    }
    EXPECT_FALSE(history.insert(entryOf("old", 1), {.limit = 10}));
    EXPECT_EQ(history.entries().size(), 10U);
}

TEST(ClipboardHistory, TrimsTheOldestUnpinnedOverTheLimit) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 10; ++i) {
        entries.push_back(pinnedOf("pin", i));
    }
    for (int i = 0; i < 12; ++i) {
        entries.push_back(entryOf("u" + std::to_string(i), (i * 5) % 12)); // 0 has the earliest date, then 5
    }
    ClipboardHistory history(entries);
    history.trim({.limit = 10});
    const auto texts = textsOf(history.entries());
    EXPECT_EQ(std::ranges::count(texts, "pin"), 10);
    EXPECT_EQ(texts.size(), 20U);
    EXPECT_EQ(std::ranges::count(texts, "u0"), 0);
    EXPECT_EQ(std::ranges::count(texts, "u5"), 0);
}

TEST(ClipboardHistory, TrimsByCopyDateEvenWhenSortedByCreation) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 11; ++i) {
        entries.push_back(entryOf(std::to_string(i), i));
        entries.back().createdAt = Date{100.0 - i};
    }
    ClipboardHistory history(entries);
    history.trim({.limit = 10, .sortByLastCopy = false});
    EXPECT_EQ(*history.entries().front().text, "1");
}

TEST(ClipboardHistory, AmongEqualDatesTrimsTheFirst) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 12; ++i) {
        entries.push_back(entryOf(std::to_string(i), 7));
    }
    ClipboardHistory history(entries);
    history.trim({.limit = 10});
    EXPECT_EQ(*history.entries().front().text, "2");
}

TEST(ClipboardHistory, TrimsUntilTheBytesFitPinsIncluded) {
    constexpr std::size_t mega = 1'048'576;
    ClipboardHistory history(
        {entryOf("old", 1, 10 * mega), pinnedOf("pin", 0, 20 * mega), entryOf("new", 2, 4 * mega)});
    history.trim({.storageMB = 25});
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("pin", "new"));
    EXPECT_EQ(history.byteCount(), 24 * mega);
}

TEST(ClipboardHistory, PinsAloneOverTheByteLimitStayAndAllElseGoes) {
    constexpr std::size_t mega = 1'048'576;
    const SharedBytes large(std::vector<std::byte>(20 * mega));
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 15; ++i) {
        entries.push_back(pinnedOf("pin", i));
        entries.back().items = ClipboardItems{{{"public.png", large}}};
        entries.push_back(entryOf("unpinned", 100 + i));
    }
    ClipboardHistory history(entries);
    history.trim({.storageMB = 250});
    EXPECT_EQ(history.entries().size(), 15U);
    EXPECT_EQ(history.byteCount(), 300 * mega);
}

TEST(ClipboardHistory, TrimsAsRemovingOneByOneWould) {
    std::mt19937 random(7);
    const auto number = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const SharedBytes large(std::vector<std::byte>(100'000));
    for (int round = 0; round < 50; ++round) {
        std::vector<ClipboardEntry> entries;
        for (int i = number(60); i > 0; --i) {
            entries.push_back(entryOf(std::to_string(i), number(20)));
            entries.back().items = ClipboardItems(static_cast<std::size_t>(1 + number(50)), {{"public.png", large}});
            entries.back().pinned = number(4) == 0;
        }
        const ClipboardOptions options{.limit = number(40), .storageMB = 25 + number(40)};
        auto expected = entries;
        const auto isUnpinned = [](const auto& entry) { return !entry.pinned; };
        const auto bytes = [&] {
            std::size_t sum = 0;
            for (const auto& entry : expected) {
                sum += entry.byteCount();
            }
            return sum;
        };
        while (std::ranges::count_if(expected, isUnpinned) > static_cast<std::ptrdiff_t>(options.safeLimit()) ||
               bytes() > options.byteLimit()) {
            auto oldest = expected.end();
            for (auto it = expected.begin(); it != expected.end(); ++it) {
                if (!it->pinned && (oldest == expected.end() || it->copiedAt < oldest->copiedAt)) {
                    oldest = it;
                }
            }
            if (oldest == expected.end()) {
                break;
            }
            expected.erase(oldest);
        }
        ClipboardHistory history(entries);
        history.trim(options);
        EXPECT_EQ(history.entries(), expected) << round;
    }
}

TEST(ClipboardHistory, TouchingMovesToTheTop) {
    const auto first = entryOf("first", 1);
    ClipboardHistory history({first, entryOf("second", 2)});
    history.touch(first.id, Date{3});
    EXPECT_THAT(textsOf(history.filtered("", {})), ElementsAre("first", "second"));
    EXPECT_EQ(history.entries()[0].createdAt, Date{1});
    history.touch(Uuid::random(), Date{4});
    EXPECT_EQ(history.entries()[0].copiedAt, Date{3});
}

TEST(ClipboardHistory, TogglesPins) {
    const auto entry = entryOf("a", 1);
    ClipboardHistory history({entry});
    history.togglePin(entry.id);
    EXPECT_TRUE(history.entries()[0].pinned);
    history.togglePin(Uuid::random());
    history.togglePin(entry.id);
    EXPECT_EQ(history.entries()[0], entry);
}

TEST(ClipboardHistory, RemovesOneEntryAndStillSearchesTheRightTexts) {
    const auto middle = entryOf("middle", 2);
    ClipboardHistory history({entryOf("first", 1), middle, entryOf("last", 3)});
    history.remove(middle.id);
    history.remove(Uuid::random());
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("first", "last"));
    EXPECT_THAT(textsOf(history.filtered("last", {})), ElementsAre("last"));
    EXPECT_THAT(history.filtered("middle", {}), IsEmpty());
}

TEST(ClipboardHistory, ClearsWithOrWithoutPins) {
    const ClipboardHistory full({pinnedOf("p2", 2), entryOf("a", 3), pinnedOf("p1", 1)});
    auto history = full;
    history.clear(ClipboardHistory::Clearing::keepPins);
    EXPECT_THAT(textsOf(history.entries()), ElementsAre("p2", "p1"));
    history = full;
    history.clear(ClipboardHistory::Clearing::includePins);
    EXPECT_THAT(history.entries(), IsEmpty());
    EXPECT_EQ(full.entries().size(), 3U);
}

TEST(ClipboardHistory, OrdersPinsFirstThenByTheChosenDate) {
    auto a = entryOf("a", 1);
    a.createdAt = Date{9};
    const ClipboardHistory history({a, entryOf("b", 5), pinnedOf("p", 0), pinnedOf("q", 3)});
    EXPECT_THAT(textsOf(history.filtered("", {})), ElementsAre("q", "p", "b", "a"));
    EXPECT_THAT(textsOf(history.filtered("", {.pinsOnTop = false})), ElementsAre("b", "q", "a", "p"));
    EXPECT_THAT(textsOf(history.filtered("", {.pinsOnTop = false, .sortByLastCopy = false})),
                ElementsAre("a", "b", "q", "p"));
}

TEST(ClipboardHistory, EqualDatesAreOrderedByIdentifier) {
    std::vector<ClipboardEntry> entries;
    for (int i = 0; i < 50; ++i) {
        entries.push_back(entryOf("x", 1));
    }
    const auto shown = ClipboardHistory(entries).filtered("", {});
    EXPECT_TRUE(std::ranges::is_sorted(shown, {}, [](const auto& entry) { return entry.id.toString(); }));
}

TEST(ClipboardHistory, EveryTermMustOccurInTextOrApplicationName) {
    const ClipboardHistory history({entryOf("The QUARTERLY report", 1, 1, "Mail"), entryOf("report", 2, 1, "Notes")});
    EXPECT_THAT(textsOf(history.filtered("mail quarterly", {})), ElementsAre("The QUARTERLY report"));
    EXPECT_THAT(textsOf(history.filtered("report", {})), ElementsAre("report", "The QUARTERLY report"));
    EXPECT_THAT(history.filtered("mail missing", {}), IsEmpty());
    EXPECT_EQ(history.filtered(" \t\n\xC2\xA0 ", {}).size(), 2U);
}

TEST(ClipboardHistory, ATermMaySpanTextAndNameNowhere) {
    const ClipboardHistory history({entryOf("end", 1, 1, "Begin")});
    EXPECT_THAT(history.filtered("endbegin", {}), IsEmpty());
    EXPECT_EQ(history.filtered("nd beg", {}).size(), 1U);
}

TEST(ClipboardHistory, TheContentOfFilesAndImagesIsNotSearchedButTheirApplicationIs) {
    auto image = entryOf("", 1, 5, "Preview");
    image.kind = ClipboardKind::image;
    const ClipboardHistory history({image});
    EXPECT_EQ(history.filtered("preview", {}).size(), 1U);
}

} // namespace
} // namespace quillane::core

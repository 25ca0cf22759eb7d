// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardEntry.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakePasteboard.hpp"

#include <gtest/gtest.h>

#include <regex>

namespace quillane::core {
namespace {

using fakes::bytesOf;

ClipboardRepresentation representation(std::string type, std::string_view data) {
    return {std::move(type), bytesOf(data)};
}

ClipboardEntry textEntry(std::string text) {
    return ClipboardEntry::make(ClipboardKind::text, text, "com.example.notes", "Notes",
                                {{representation("public.utf8-plain-text", text)}}, Date{1.5});
}

/// The digest's input, written out by hand: length and bytes of each chunk.
TEST(ClipboardEntry, DigestIsThatOfTheChunks) {
    // printf '\0\0\0\0\0\0\0\4text\0\0\0\0\0\0\0\4item\0\0\0\0\0\0\0\26public.utf8-plain-text\0\0\0\0\0\0\0\2hi' |
    // sha256sum
    EXPECT_EQ(clipboardDigest(ClipboardKind::text, {{representation("public.utf8-plain-text", "hi")}}),
              "9ea52ff351571685f59b8366d3ea3765d39642b3eb5b0eae1d3eb9fa9d3df8e4");
}

TEST(ClipboardEntry, DigestSortsTheRepresentationsOfAnItemByTypeAndKeepsEqualOnesInOrder) {
    const auto a = representation("a", "1");
    const auto b = representation("b", "2");
    const auto again = representation("a", "3");
    const auto digest = [](ClipboardItems items) { return clipboardDigest(ClipboardKind::image, items); };
    EXPECT_EQ(digest({{a, b}}), digest({{b, a}}));
    EXPECT_EQ(digest({{b, a, again}}), digest({{a, again, b}}));
    EXPECT_NE(digest({{a, again}}), digest({{again, a}}));
}

TEST(ClipboardEntry, DigestDistinguishesKindsItemsAndBoundaries) {
    const auto digest = [](ClipboardItems items) { return clipboardDigest(ClipboardKind::text, items); };
    const auto a = representation("a", "xy");
    EXPECT_NE(digest({{a}}), clipboardDigest(ClipboardKind::files, {{a}}));
    EXPECT_NE(digest({{a, a}}), digest({{a}, {a}}));
    EXPECT_NE(digest({{representation("ax", "y")}}), digest({{a}}));
    EXPECT_TRUE(std::regex_match(digest({}), std::regex("[0-9a-f]{64}")));
}

TEST(ClipboardEntry, OnlyKindAndContentsEnterTheDigest) {
    const ClipboardItems items{{representation("public.utf8-plain-text", "same")}};
    const auto one = ClipboardEntry::make(ClipboardKind::text, "same", "com.example.a", "A", items, Date{1});
    const auto two = ClipboardEntry::make(ClipboardKind::text, "other", "com.example.b", "B", items, Date{2});
    EXPECT_EQ(one.digest, two.digest);
    EXPECT_NE(one.id, two.id);
}

TEST(ClipboardEntry, ANewOneIsUnpinnedAndCopiedWhenItIsMade) {
    const auto entry = textEntry("hello");
    EXPECT_EQ(entry.createdAt, Date{1.5});
    EXPECT_EQ(entry.copiedAt, Date{1.5});
    EXPECT_FALSE(entry.pinned);
    EXPECT_EQ(*entry.text, "hello");
    EXPECT_EQ(entry.source, "com.example.notes");
    EXPECT_EQ(entry.sourceName, "Notes");
}

TEST(ClipboardEntry, CutsTheTextAtAHundredThousandUserPerceivedCharacters) {
    std::string pointed;
    for (int i = 0; i < 100'001; ++i) {
        pointed += "\xD7\xA9\xD6\xB8"; // shin with qamats
    }
    EXPECT_EQ(textEntry(pointed).text->size(), 400'000U);
    EXPECT_EQ(textEntry(std::string(100'000, 'a')).text->size(), 100'000U);
    EXPECT_EQ(textEntry(std::string(100'001, 'a')).text->size(), 100'000U);
}

TEST(ClipboardEntry, MakesItsTextsValid) {
    const auto entry = ClipboardEntry::make(ClipboardKind::text, "a\xff", "b\xc3", "\xed\xa0\x80z", {}, Date{});
    EXPECT_EQ(*entry.text, "a\xEF\xBF\xBD");
    EXPECT_EQ(entry.source, "b\xEF\xBF\xBD");
    EXPECT_TRUE(entry.sourceName.ends_with("\xEF\xBF\xBDz"));
}

TEST(ClipboardEntry, CountsTheBytesOfAllContents) {
    EXPECT_EQ(textEntry("").byteCount(), 0U);
    auto entry = textEntry("");
    entry.items = ClipboardItems{{representation("a", "123"), representation("b", "4567")}, {representation("a", "8")}};
    EXPECT_EQ(entry.byteCount(), 8U);
}

TEST(ClipboardEntry, EqualityComparesEveryField) {
    const auto entry = textEntry("x");
    auto other = entry;
    EXPECT_EQ(other, entry);
    const auto differs = [&](auto change) {
        auto changed = entry;
        change(changed);
        return changed != entry;
    };
    EXPECT_TRUE(differs([](auto& e) { e.id = Uuid::random(); }));
    EXPECT_TRUE(differs([](auto& e) { e.digest = "0"; }));
    EXPECT_TRUE(differs([](auto& e) { e.kind = ClipboardKind::files; }));
    EXPECT_TRUE(differs([](auto& e) { e.text = std::string("y"); }));
    EXPECT_TRUE(differs([](auto& e) { e.source = "y"; }));
    EXPECT_TRUE(differs([](auto& e) { e.sourceName = "y"; }));
    EXPECT_TRUE(differs([](auto& e) { e.createdAt = Date{2}; }));
    EXPECT_TRUE(differs([](auto& e) { e.copiedAt = Date{2}; }));
    EXPECT_TRUE(differs([](auto& e) { e.pinned = true; }));
    EXPECT_TRUE(differs([](auto& e) { e.items = ClipboardItems{{representation("a", "")}}; }));
}

} // namespace
} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardSnapshot.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakePasteboard.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace quillane::core {
namespace {

using fakes::FakePasteboard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Item = FakePasteboard::Item;
using clipboardSnapshot::RestoreMode;

constexpr const char* stringType = "public.utf8-plain-text";

class ClipboardSnapshotTest : public ::testing::Test {
protected:
    std::optional<ClipboardEntry> capture() { return clipboardSnapshot::capture(pasteboard_, options_, moment_); }

    FakePasteboard pasteboard_;
    ClipboardOptions options_;
    clipboardSnapshot::Moment moment_{
        .foreground = "com.example.notes", .sourceName = "Notes", .secureInput = false, .now = Date{42}};
};

Item fileItem(const std::string& url) {
    return {{{"public.file-url", url}}, {}};
}

TEST_F(ClipboardSnapshotTest, LegacyMarkerCountsUnderItsOwnName) {
    pasteboard_.copy({Item{{{stringType, "secret"}}, {"Pasteboard generator type"}}});
    ASSERT_THAT(pasteboard_.itemTypes()[0], ElementsAre(stringType, StartsWith("dyn."))); // as macOS names it there
    EXPECT_EQ(capture(), std::nullopt);
    pasteboard_.copy({Item{{{stringType, "public"}}, {"Another legacy type"}}});
    EXPECT_NE(capture(), std::nullopt);
}

TEST_F(ClipboardSnapshotTest, LegacyTypesAreNotStored) {
    pasteboard_.copy({Item{{{stringType, "text"}, {"NeXT Rich Text Format v1.0 pasteboard type", "{}"}}, {}}});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->byteCount(), 4U);
    pasteboard_.copy({Item{{{"NSStringPboardType", "text"}, {"Legacy type", "x"}}, {}}});
    EXPECT_EQ(capture(), std::nullopt);
}

TEST_F(ClipboardSnapshotTest, DeniedContentsYieldNothing) {
    pasteboard_.copyText("text");
    pasteboard_.setAccess(PasteboardAccess::denied);
    EXPECT_EQ(capture(), std::nullopt);
    pasteboard_.setAccess(PasteboardAccess::asked, false);
    EXPECT_EQ(capture(), std::nullopt);
    pasteboard_.setAccess(PasteboardAccess::asked, true);
    EXPECT_NE(capture(), std::nullopt);
}

/// Each question of the system interrupts the user.
TEST_F(ClipboardSnapshotTest, AccessIsAskedForOnlyWhereSomethingIsKept) {
    pasteboard_.setAccess(PasteboardAccess::asked);
    const auto copyText = [&](const std::string& marker) {
        pasteboard_.copy({Item{{{stringType, "text"}, {"org.nspasteboard.source", "com.example.app"}}, {marker}}});
    };
    copyText("org.nspasteboard.ConcealedType");
    EXPECT_EQ(capture(), std::nullopt);
    copyText("Pasteboard generator type");
    EXPECT_EQ(capture(), std::nullopt);
    copyText("public.rtf");
    moment_.secureInput = true;
    EXPECT_EQ(capture(), std::nullopt);
    moment_.secureInput = false;
    options_.saveText = false;
    EXPECT_EQ(capture(), std::nullopt);
    options_.saveText = true;
    options_.ignoredApps = {moment_.foreground};
    EXPECT_EQ(capture(), std::nullopt);
    EXPECT_EQ(pasteboard_.timesAsked(), 0);
    options_.ignoredApps.clear();
    EXPECT_NE(capture(), std::nullopt);
    EXPECT_EQ(pasteboard_.timesAsked(), 1);
}

TEST_F(ClipboardSnapshotTest, TextIsReadOnlyWhereItIsOffered) {
    pasteboard_.copy({Item{{{"public.rtf", "{}"}}, {}}});
    ASSERT_NE(capture(), std::nullopt);
    EXPECT_THAT(pasteboard_.stringsRead(), IsEmpty());
}

TEST_F(ClipboardSnapshotTest, TextBecomesAnEntry) {
    pasteboard_.copyText("hello");
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->kind, ClipboardKind::text);
    EXPECT_EQ(*entry->text, "hello");
    EXPECT_EQ(entry->source, "com.example.notes");
    EXPECT_EQ(entry->sourceName, "Notes");
    EXPECT_EQ(entry->copiedAt, Date{42});
    EXPECT_EQ(entry->byteCount(), 5U);
}

TEST_F(ClipboardSnapshotTest, AnEmptyPasteboardYieldsNothing) {
    pasteboard_.copy({});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, AHundredItemsMayBeAnEntryAndOneMoreMayNot) {
    pasteboard_.copy(std::vector<Item>(100, Item{{{stringType, "x"}}, {}}));
    EXPECT_TRUE(capture());
    pasteboard_.copy(std::vector<Item>(101, Item{{{stringType, "x"}}, {}}));
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, TakesTheSourceFromTheMarkerAndCutsIt) {
    pasteboard_.copy({Item{{{stringType, "x"}, {"org.nspasteboard.source", "com.example.other"}}, {}}});
    EXPECT_EQ(capture()->source, "com.example.other");
    std::string pointed;
    for (int i = 0; i < 300; ++i) {
        pointed += "e\xCC\x81";
    }
    pasteboard_.copy({Item{{{stringType, "x"}, {"org.nspasteboard.source", pointed}}, {}}});
    EXPECT_EQ(capture()->source.size(), 256U * 3);
    moment_.foreground = std::string(300, 'f');
    pasteboard_.copyText("x");
    EXPECT_EQ(capture()->source, std::string(256, 'f'));
}

TEST_F(ClipboardSnapshotTest, SecureInputYieldsNothing) {
    pasteboard_.copyText("x");
    moment_.secureInput = true;
    EXPECT_FALSE(capture());
    EXPECT_EQ(pasteboard_.reads(), 0);
}

TEST_F(ClipboardSnapshotTest, AMarkerAnywhereYieldsNothingWhateverTheApplication) {
    pasteboard_.copy({Item{{{stringType, "x"}}, {}}, Item{{{stringType, "y"}}, {"org.nspasteboard.ConcealedType"}}});
    EXPECT_FALSE(capture());
    moment_.foreground.clear();
    EXPECT_FALSE(capture());
    EXPECT_EQ(pasteboard_.reads(), 0);
}

TEST_F(ClipboardSnapshotTest, PasswordManagersAndExcludedApplicationsYieldNothing) {
    pasteboard_.copyText("x");
    moment_.foreground = "com.bitwarden.desktop";
    EXPECT_FALSE(capture());
    moment_.foreground = "com.example.bank";
    EXPECT_TRUE(capture());
    options_.ignoredApps = {"com.example.bank"};
    EXPECT_FALSE(capture());
    moment_.foreground = "com.example.notes";
    EXPECT_TRUE(capture());
    pasteboard_.copy({Item{{{stringType, "x"}, {"org.nspasteboard.source", "com.example.bank"}}, {}}});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, AFileWinsOverImageAndText) {
    pasteboard_.copy(
        {Item{{{stringType, "note"}, {"public.png", "PNG"}, {"public.file-url", "file:///tmp/a%20b.txt"}}, {}}});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->kind, ClipboardKind::files);
    EXPECT_EQ(*entry->text, "a b.txt");
    EXPECT_EQ(entry->items->front().size(), 1U);
}

TEST_F(ClipboardSnapshotTest, AnImageWinsOverTextAndHasNoText) {
    for (const auto* type : {"public.png", "public.tiff", "public.jpeg"}) {
        pasteboard_.copy({Item{{{stringType, "caption"}, {type, "IMAGE"}}, {}}});
        const auto entry = capture();
        ASSERT_TRUE(entry) << type;
        EXPECT_EQ(entry->kind, ClipboardKind::image);
        EXPECT_EQ(*entry->text, "");
    }
}

TEST_F(ClipboardSnapshotTest, TheKindsSwitchRefusesItEvenWhenOtherFlavoursAreOn) {
    options_.saveImages = false;
    pasteboard_.copy({Item{{{stringType, "caption"}, {"public.png", "IMAGE"}}, {}}});
    EXPECT_FALSE(capture());
    options_ = {.saveFiles = false};
    pasteboard_.copy({fileItem("file:///tmp/a")});
    EXPECT_FALSE(capture());
    options_ = {.saveText = false};
    pasteboard_.copyText("x");
    EXPECT_FALSE(capture());
}

std::vector<std::string> typesOf(const std::vector<ClipboardRepresentation>& item) {
    std::vector<std::string> types;
    for (const auto& representation : item) {
        types.push_back(representation.type);
    }
    return types;
}

TEST_F(ClipboardSnapshotTest, KeepsTheKnownFlavoursInTheirOrderAndNoOthers) {
    pasteboard_.copy({Item{{{"public.url", "https://x.org/"},
                            {"com.example.private", "secret"},
                            {"public.html", "<b>x</b>"},
                            {"public.rtf", "{\\rtf1 x}"},
                            {stringType, "x"}},
                           {}}});
    EXPECT_THAT(typesOf(capture()->items->front()), ElementsAre(stringType, "public.rtf", "public.html", "public.url"));
    pasteboard_.copy({Item{{{"public.tiff", "T"}, {"public.jpeg", "J"}, {"public.png", "P"}, {stringType, "x"}}, {}}});
    EXPECT_THAT(typesOf(capture()->items->front()), ElementsAre("public.png", "public.jpeg", "public.tiff"));
}

TEST_F(ClipboardSnapshotTest, AnUnknownFlavourAloneYieldsNothing) {
    pasteboard_.copy({Item{{{"com.example.private", "secret"}}, {}}});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, EveryItemMustContribute) {
    pasteboard_.copy({Item{{{stringType, "x"}}, {}}, Item{{{"com.example.private", "y"}}, {}}});
    EXPECT_FALSE(capture());
    pasteboard_.copy({fileItem("file:///a"), Item{{{stringType, "y"}}, {}}});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, ATypeThatYieldsNoDataIsSkipped) {
    pasteboard_.copy({Item{{{"public.rtf", "{\\rtf1 x}"}}, {stringType}}});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_THAT(typesOf(entry->items->front()), ElementsAre("public.rtf"));
    EXPECT_EQ(*entry->text, "");
    pasteboard_.copy({Item{{}, {stringType}}});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, NothingButEmptyDataYieldsNothing) {
    pasteboard_.copyText("");
    EXPECT_FALSE(capture());
    pasteboard_.copy({Item{{{stringType, ""}}, {}}, Item{{{stringType, "x"}}, {}}});
    EXPECT_TRUE(capture());
}

TEST_F(ClipboardSnapshotTest, ExactlyTheMostBytesAreKeptAndOneMoreIsRefused) {
    pasteboard_.copy(
        {Item{{{"public.png", std::string(clipboardSnapshot::maximumBytes - 1, 'p')}, {"public.tiff", "t"}}, {}}});
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->byteCount(), clipboardSnapshot::maximumBytes);
    pasteboard_.copy(
        {Item{{{"public.png", std::string(clipboardSnapshot::maximumBytes - 1, 'p')}, {"public.tiff", "tt"}}, {}}});
    EXPECT_FALSE(capture());
}

TEST_F(ClipboardSnapshotTest, GivesUpWhileReadingAsSoonAsItIsTooLarge) {
    std::vector<Item> items(50, Item{{{"public.png", std::string(1'048'576, 'p')}}, {}});
    pasteboard_.copy(items);
    EXPECT_FALSE(capture());
    EXPECT_EQ(pasteboard_.reads(), 21);
}

TEST_F(ClipboardSnapshotTest, AChangeWhileReadingYieldsNothing) {
    pasteboard_.copyText("first");
    pasteboard_.onRead([this] {
        pasteboard_.onRead(nullptr);
        pasteboard_.copyText("second");
    });
    EXPECT_FALSE(capture());
    EXPECT_EQ(*capture()->text, "second");
}

TEST_F(ClipboardSnapshotTest, TextFallsBackToTheUrlAndThenToNothing) {
    pasteboard_.copy({Item{{{"public.url", "https://x.org/"}}, {}}});
    EXPECT_EQ(*capture()->text, "https://x.org/");
    pasteboard_.copy({Item{{{"public.html", "<b>x</b>"}}, {}}});
    EXPECT_EQ(*capture()->text, "");
}

TEST_F(ClipboardSnapshotTest, TextIsThePasteboardsWhenAnItemAloneDoesNotSayIt) {
    pasteboard_.copyText("caf\xe9");
    EXPECT_EQ(*capture()->text, "caf\xEF\xBF\xBD");
    pasteboard_.copy({Item{{{"public.html", "<b>x</b>"}}, {}}, Item{{{stringType, "second"}}, {}}});
    EXPECT_EQ(*capture()->text, "second");
}

TEST_F(ClipboardSnapshotTest, OnlyTheTextOfSeveralItemsIsAskedOfThePasteboard) {
    pasteboard_.copyText("one");
    ASSERT_TRUE(capture());
    EXPECT_THAT(pasteboard_.stringsRead(), IsEmpty()) << "the item that was read says it";
    pasteboard_.copy({Item{{{stringType, "one"}}, {}}, Item{{{stringType, "two"}}, {}}});
    ASSERT_TRUE(capture());
    EXPECT_THAT(pasteboard_.stringsRead(), ElementsAre(stringType));
}

TEST_F(ClipboardSnapshotTest, TwoFilesHaveTheirNamesOnTwoLines) {
    pasteboard_.copy({fileItem("file:///home/a/%D7%A9%D7%9C%D7%95%D7%9D.txt"), fileItem("file:///home/b%2Fc/")});
    EXPECT_EQ(*capture()->text, "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D.txt\nb%2Fc");
}

TEST_F(ClipboardSnapshotTest, AFileReferenceThatIsNotAUrlHasNoName) {
    pasteboard_.copy({fileItem("not a url"), fileItem("file:///b"), fileItem("\xff\xfe")});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(*entry->text, "b");
    EXPECT_EQ(entry->items->size(), 3U);
}

TEST_F(ClipboardSnapshotTest, TheSameTextFromTwoApplicationsHasOneDigest) {
    pasteboard_.copyText("same");
    const auto one = capture();
    moment_ = {.foreground = "com.example.other", .sourceName = "Other", .secureInput = false, .now = Date{99}};
    EXPECT_EQ(capture()->digest, one->digest);
}

TEST_F(ClipboardSnapshotTest, WantsExactlyWhatItReads) {
    EXPECT_THAT(clipboardSnapshot::wantedTypes({stringType, "public.html", "x.private"}, options_),
                ElementsAre(stringType, "public.html"));
    EXPECT_THAT(clipboardSnapshot::wantedTypes({stringType, "public.png"}, options_), ElementsAre("public.png"));
    EXPECT_THAT(clipboardSnapshot::wantedTypes({stringType, "public.png", "public.file-url"}, options_),
                ElementsAre("public.file-url"));
    EXPECT_THAT(clipboardSnapshot::wantedTypes({stringType, "org.nspasteboard.ConcealedType"}, options_), IsEmpty());
    EXPECT_THAT(clipboardSnapshot::wantedTypes({"org.nspasteboard.source"}, options_), IsEmpty());
    options_.saveImages = false;
    EXPECT_THAT(clipboardSnapshot::wantedTypes({stringType, "public.png"}, options_), IsEmpty());
}

TEST_F(ClipboardSnapshotTest, WantsTheSourceMarkerAloneUntilItIsKnown) {
    const PasteboardTypeSet types{stringType, "public.html", "org.nspasteboard.source"};
    options_.ignoredApps = {"com.example.vault"};
    const auto wanted = [&](const std::optional<std::string>& source) {
        return clipboardSnapshot::wantedTypes(types, options_, moment_, source);
    };
    EXPECT_THAT(wanted(std::nullopt), ElementsAre("org.nspasteboard.source"));
    EXPECT_THAT(wanted("com.example.editor"), ElementsAre(stringType, "public.html"));
    EXPECT_THAT(wanted(""), ElementsAre(stringType, "public.html"));
    EXPECT_THAT(wanted("com.example.vault"), IsEmpty());
    EXPECT_THAT(wanted("com.bitwarden.desktop"), IsEmpty());
}

TEST_F(ClipboardSnapshotTest, WantsNotEvenTheSourceMarkerOfWhatIsRefusedWithoutIt) {
    const PasteboardTypeSet types{stringType, "org.nspasteboard.source"};
    options_.ignoredApps = {"com.example.vault"};
    for (const auto* front : {"com.example.vault", "com.bitwarden.desktop"}) {
        moment_.foreground = front;
        EXPECT_THAT(clipboardSnapshot::wantedTypes(types, options_, moment_), IsEmpty()) << front;
    }
    moment_.foreground = "com.example.editor";
    moment_.secureInput = true;
    EXPECT_THAT(clipboardSnapshot::wantedTypes(types, options_, moment_), IsEmpty());
}

// Restoring

ClipboardEntry makeEntry(ClipboardKind kind, ClipboardItems items) {
    return ClipboardEntry::make(kind, "text", "com.example.first", "First", std::move(items), Date{});
}

ClipboardRepresentation flavour(std::string_view type, std::string_view data) {
    return {std::string(type), fakes::bytesOf(data)};
}

TEST_F(ClipboardSnapshotTest, RestoringWritesEveryItemAndTheSource) {
    pasteboard_.copyText("current");
    const auto entry = makeEntry(ClipboardKind::text, {{flavour(stringType, "a"), flavour("public.html", "<i>a</i>")},
                                                       {flavour(stringType, "b")}});
    ASSERT_TRUE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full));
    using Flavours = std::vector<std::pair<std::string, std::string>>;
    ASSERT_EQ(pasteboard_.items().size(), 2U);
    EXPECT_EQ(
        pasteboard_.items()[0].flavours,
        (Flavours{{stringType, "a"}, {"public.html", "<i>a</i>"}, {"org.nspasteboard.source", "com.example.first"}}));
    EXPECT_EQ(pasteboard_.items()[1].flavours,
              (Flavours{{stringType, "b"}, {"org.nspasteboard.source", "com.example.first"}}));
    EXPECT_EQ(pasteboard_.clears(), 1);
}

TEST_F(ClipboardSnapshotTest, ARestoredEntryIsCapturedAsTheSameContentOfItsFirstApplication) {
    pasteboard_.copyText("round trip");
    const auto entry = capture();
    ASSERT_TRUE(clipboardSnapshot::restore(*entry, pasteboard_, RestoreMode::full));
    moment_.foreground = "com.example.later";
    const auto again = capture();
    EXPECT_EQ(again->digest, entry->digest);
    EXPECT_EQ(again->source, "com.example.notes");
}

TEST_F(ClipboardSnapshotTest, RestoringReportsWhenTheSystemRefuses) {
    pasteboard_.refuseWrites();
    const auto entry = makeEntry(ClipboardKind::text, {{flavour(stringType, "a")}});
    EXPECT_FALSE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full));
    EXPECT_FALSE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::plainText));
}

TEST_F(ClipboardSnapshotTest, RestoringPlainTextGivesTheFirstItemsString) {
    const auto entry = makeEntry(ClipboardKind::text, {{flavour("public.rtf", "{}"), flavour(stringType, "plain")},
                                                       {flavour(stringType, "second")}});
    ASSERT_TRUE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::plainText));
    ASSERT_EQ(pasteboard_.items().size(), 1U);
    EXPECT_EQ(pasteboard_.items()[0].flavours,
              (std::vector<std::pair<std::string, std::string>>{{stringType, "plain"}}));
}

TEST_F(ClipboardSnapshotTest, RestoringPlainTextFailsWithoutPlainTextAndLeavesThePasteboard) {
    pasteboard_.copyText("current");
    const auto before = pasteboard_.changeCount();
    for (const auto& entry :
         {makeEntry(ClipboardKind::text, {{flavour("public.rtf", "{}")}}),
          makeEntry(ClipboardKind::text, {{flavour("public.rtf", "{}")}, {flavour(stringType, "x")}}),
          makeEntry(ClipboardKind::text, {{flavour(stringType, "\xff")}}), makeEntry(ClipboardKind::text, {}),
          makeEntry(ClipboardKind::files, {{flavour(stringType, "x")}}),
          makeEntry(ClipboardKind::image, {{flavour(stringType, "x")}})}) {
        EXPECT_FALSE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::plainText));
    }
    EXPECT_EQ(pasteboard_.changeCount(), before);
    EXPECT_EQ(pasteboard_.items()[0].flavours[0].second, "current");
}

class ClipboardFilesTest : public ClipboardSnapshotTest {
protected:
    std::string makeFile(const std::string& name) const {
        std::ofstream(folder_ / name) << "x";
        return "file://" + (folder_ / name).string();
    }

    const live::TemporaryFolder temporary_;
    const std::filesystem::path folder_ = temporary_.path();
};

TEST_F(ClipboardFilesTest, RestoresReferencesToFilesThatExist) {
    const auto entry =
        makeEntry(ClipboardKind::files, {{flavour("public.file-url", makeFile("a"))},
                                         {flavour("public.file-url", "file://localhost" + folder_.string() + "/")}});
    ASSERT_TRUE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full));
    EXPECT_EQ(pasteboard_.items().size(), 2U);
}

TEST_F(ClipboardFilesTest, FindsFilesByTheirDecodedName) {
    makeFile("\xD7\xA9 %41");
    const auto entry = makeEntry(ClipboardKind::files,
                                 {{flavour("public.file-url", "file://" + folder_.string() + "/%D7%A9%20%2541")}});
    EXPECT_TRUE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full));
}

TEST_F(ClipboardFilesTest, OneBadReferenceFailsAndLeavesThePasteboard) {
    pasteboard_.copyText("current");
    const auto good = makeFile("good");
    const auto gone = makeFile("gone");
    std::filesystem::remove(folder_ / "gone");
    const auto before = pasteboard_.changeCount();
    for (const std::string& bad : {gone, std::string("https://example.org/"), std::string("\xff"),
                                   std::string("no url"), good.substr(7), std::string()}) {
        const auto entry =
            makeEntry(ClipboardKind::files, {{flavour("public.file-url", good)}, {flavour("public.file-url", bad)}});
        EXPECT_FALSE(clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full)) << bad;
    }
    EXPECT_EQ(pasteboard_.changeCount(), before);
    EXPECT_EQ(pasteboard_.items()[0].flavours[0].second, "current");
}

TEST_F(ClipboardFilesTest, FilesThatFinderCopiesHaveTheirNamesAndKeepTheirBytes) {
    makeFile("report [1].txt");
    makeFile("\xD7\xA9");
    pasteboard_.copyFiles({folder_ / "report [1].txt", folder_ / "\xD7\xA9", folder_});
    const auto url = pasteboard_.items()[0].flavours[0].second;
    ASSERT_THAT(url, StartsWith("file:///.file/id="));
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(*entry->text, "report [1].txt\n\xD7\xA9\n" + folder_.filename().string());
    EXPECT_EQ((*entry->items)[0][0].data, flavour("public.file-url", url).data);
}

TEST_F(ClipboardFilesTest, FilesThatFinderCopiesAreRestoredAsLongAsTheyAreThere) {
    makeFile("file");
    pasteboard_.copyFiles({folder_ / "file"});
    const auto url = pasteboard_.items()[0].flavours[0].second;
    const auto entry = capture();
    ASSERT_TRUE(entry);
    pasteboard_.copyText("current");
    EXPECT_TRUE(clipboardSnapshot::restore(*entry, pasteboard_, RestoreMode::full));
    EXPECT_EQ(pasteboard_.items()[0].flavours[0].second, url);
    pasteboard_.move(folder_ / "file", folder_ / "renamed");
    EXPECT_TRUE(clipboardSnapshot::restore(*entry, pasteboard_, RestoreMode::full));
    std::filesystem::remove(folder_ / "renamed");
    pasteboard_.copyText("current");
    EXPECT_FALSE(clipboardSnapshot::restore(*entry, pasteboard_, RestoreMode::full));
    EXPECT_EQ(pasteboard_.items()[0].flavours[0].second, "current");
}

TEST_F(ClipboardFilesTest, ReferenceThatLeadsNowhereHasItsOwnTextAsName) {
    pasteboard_.copy({fileItem("file:///.file/id=1.2")});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(*entry->text, "id=1.2");
}

} // namespace
} // namespace quillane::core

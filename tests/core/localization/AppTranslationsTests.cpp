// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/AppTranslations.hpp"

#include "core/localization/Texts.hpp"
#include "support/DesktopWords.hpp"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

namespace quillane::core {
namespace {

/// A message of the table and its origin, for tests that check all messages.
struct Message {
    std::string name;
    appTranslations::Entry entry;
    bool isName = false;
};

std::vector<Message> messages() {
    return {
#define QUILLANE_TEXT(name, hebrew, english, arabic) {#name, {hebrew, english, arabic}, false},
#define QUILLANE_NAME(name, text) {#name, {text, text, text}, true},
#include "core/localization/AppTranslations.def"
#undef QUILLANE_NAME
#undef QUILLANE_TEXT
    };
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::vector<UChar32> codePoints(std::string_view text) {
    const auto decoded = unicode(text);
    std::vector<UChar32> points;
    for (int32_t position = 0; position < decoded.length(); position = decoded.moveIndex32(position, 1)) {
        points.push_back(decoded.char32At(position));
    }
    return points;
}

UScriptCode scriptOf(UChar32 point) {
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(point, &status);
}

/// The first character that gives a text its direction, arguments aside.
UChar32 firstStrong(std::string_view text) {
    for (const auto point : codePoints(text)) {
        const auto direction = u_charDirection(point);
        if (direction == U_LEFT_TO_RIGHT || direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC) {
            return point;
        }
    }
    return 0;
}

void forEveryText(const std::function<void(const Message&, std::string_view)>& check) {
    for (const auto& message : messages()) {
        for (const auto text : {message.entry.key, message.entry.english, message.entry.arabic}) {
            SCOPED_TRACE(message.name + ": " + std::string(text));
            check(message, text);
        }
    }
}

TEST(AppTranslations, FindsEveryRowByItsHebrewText) {
    const auto all = messages();
    ASSERT_EQ(appTranslations::entries().size(), all.size());
    for (const auto& message : all) {
        const auto* entry = appTranslations::entry(message.entry.key);
        ASSERT_NE(entry, nullptr) << message.name;
        EXPECT_EQ(entry->key, message.entry.key);
        EXPECT_EQ(entry->english, message.entry.english);
        EXPECT_EQ(entry->arabic, message.entry.arabic);
    }
}

TEST(AppTranslations, HasNoEntryForOtherTexts) {
    for (const auto* text : {"", "Settings", "הגדרו", "הגדרות!", "الإعدادات"}) {
        EXPECT_EQ(appTranslations::entry(text), nullptr) << text;
    }
}

TEST(AppTranslations, IsWellFormedUTF8) {
    forEveryText([](const Message&, std::string_view text) { EXPECT_EQ(unicode(text).indexOf(char16_t{0xFFFD}), -1); });
}

TEST(AppTranslations, HasNoBlanksAtTheEndsOrInARow) {
    forEveryText([](const Message&, std::string_view text) {
        const auto points = codePoints(text);
        EXPECT_FALSE(u_isUWhiteSpace(points.front()));
        EXPECT_FALSE(u_isUWhiteSpace(points.back()));
        const auto bothBlank = [](UChar32 left, UChar32 right) {
            return u_isUWhiteSpace(left) != 0 && u_isUWhiteSpace(right) != 0;
        };
        EXPECT_EQ(std::ranges::adjacent_find(points, bothBlank), points.end());
    });
}

TEST(AppTranslations, UsesTypographicPunctuation) {
    forEveryText([](const Message&, std::string_view text) {
        EXPECT_EQ(text.find("..."), std::string_view::npos) << "an ellipsis is one character";
        EXPECT_EQ(text.find('"'), std::string_view::npos);
        EXPECT_EQ(text.find('\''), std::string_view::npos);
        EXPECT_EQ(text.find(" - "), std::string_view::npos);
        EXPECT_EQ(text.find('\n'), std::string_view::npos);
    });
}

/// The full stop of an abbreviation does not end a sentence.
bool endsWithArabicUnit(std::string_view text) {
    return std::ranges::any_of(std::array{"ك.ب.", "م.ب.", "ج.ب.", "ت.ب."},
                               [=](const char* unit) { return text.ends_with(unit); });
}

TEST(AppTranslations, EndsAlikeInEveryLanguage) {
    for (const auto& [name, entry, isName] : messages()) {
        for (const auto* ending : {"…", ".", ":"}) {
            EXPECT_EQ(entry.key.ends_with(ending), entry.english.ends_with(ending)) << name;
            const bool arabicEnds = entry.arabic.ends_with(ending) && !endsWithArabicUnit(entry.arabic);
            EXPECT_EQ(arabicEnds, entry.english.ends_with(ending)) << name;
        }
    }
}

TEST(AppTranslations, WritesEachLanguageInItsScript) {
    for (const auto& [name, entry, isName] : messages()) {
        if (isName) {
            continue;
        }
        const bool isOnlyLatinUnit = entry.key.starts_with("\u2066%@ ") && entry.key.ends_with("\u2069");
        EXPECT_TRUE(isOnlyLatinUnit || scriptOf(firstStrong(entry.key)) == USCRIPT_HEBREW)
            << name << ": Hebrew begins with a Hebrew letter";
        EXPECT_EQ(scriptOf(firstStrong(entry.arabic)), USCRIPT_ARABIC) << name << ": Arabic begins with an Arabic one";
        EXPECT_EQ(scriptOf(firstStrong(entry.english)), USCRIPT_LATIN) << name << ": English begins with a Latin one";
        const auto has = [](std::string_view text, UScriptCode script) {
            return std::ranges::any_of(codePoints(text), [=](UChar32 point) { return scriptOf(point) == script; });
        };
        EXPECT_FALSE(has(entry.key, USCRIPT_ARABIC)) << name;
        EXPECT_FALSE(has(entry.arabic, USCRIPT_HEBREW)) << name;
        const bool showsHebrew = name == "fixWrongLayoutExplanation"; // what becomes of a word
        EXPECT_EQ(has(entry.english, USCRIPT_HEBREW), showsHebrew) << name;
        EXPECT_FALSE(has(entry.english, USCRIPT_ARABIC)) << name;
    }
}

TEST(AppTranslations, KeepsLatinNamesInEveryLanguage) {
    for (const auto& [name, entry, isName] : messages()) {
        for (const auto* latin :
             {"Quillane", "Shift", "Option", "Alt", "Ctrl", "Enter", "Command + Shift + G", "macOS", "X11"}) {
            const bool inEnglish = entry.english.find(latin) != std::string_view::npos;
            EXPECT_EQ(entry.key.find(latin) != std::string_view::npos, inEnglish) << name << ", " << latin;
            EXPECT_EQ(entry.arabic.find(latin) != std::string_view::npos, inEnglish) << name << ", " << latin;
        }
    }
}

TEST(AppTranslations, RowOfADesktopNamesNothingOfAnother) {
    int pairs = 0;
    const auto check = [](const appTranslations::Entry* entry, Desktop desktop) {
        ASSERT_NE(entry, nullptr);
        for (const auto text : {entry->key, entry->english, entry->arabic}) {
            EXPECT_EQ(fakes::wordOfAnotherDesktop(text, desktop), std::nullopt) << text;
        }
    };
#define QUILLANE_TEXT(name, hebrew, english, arabic)
#define QUILLANE_NAME(name, text)
#define QUILLANE_ON_MACOS(name, hebrew, english, arabic)                                                               \
    check(appTranslations::entry(texts::name.on(Desktop::macOS).key), Desktop::macOS);                                 \
    check(appTranslations::entry(texts::name.on(Desktop::linuxDesktop).key), Desktop::linuxDesktop);                   \
    ++pairs;
#define QUILLANE_ON_LINUX(name, hebrew, english, arabic)
#include "core/localization/AppTranslations.def"
#undef QUILLANE_NAME
#undef QUILLANE_TEXT
    EXPECT_GT(pairs, 20);
}

constexpr UChar32 leftToRightMark = 0x200E;

TEST(AppTranslations, HoldsNoInvisibleMarksButIsolatesAndWhatKeepsASignBeforeItsWord) {
    forEveryText([](const Message&, std::string_view text) {
        auto rest = unicode(text);
        rest.findAndReplace(unicode("\u2068%@\u2069"), unicode("%@"));
        rest.findAndReplace(unicode("\u2066⌃⇧⌘4\u2069"), unicode("⌃⇧⌘4"));
        rest.findAndReplace(unicode("\u2066%@ × %@\u2069"), unicode("%@ × %@"));
        for (const auto* unit : {"B", "kB", "MB", "GB", "TB"}) {
            for (const auto* number : {"%@", "20"}) {
                const auto quantity = std::string(number) + " " + unit;
                rest.findAndReplace(unicode("\u2066" + quantity + "\u2069"), unicode(quantity));
            }
        }
        for (const auto point : codePoints(text)) {
            if (point == leftToRightMark) {
                for (auto at = rest.indexOf(point); at >= 0; at = rest.indexOf(point, at + 1)) {
                    EXPECT_TRUE(at > 0 && rest.charAt(at - 1) == u' ' && !u_isalnum(rest.char32At(at + 1)) &&
                                u_isalpha(rest.char32At(at + 2)))
                        << "a mark that is not before a sign and its word";
                }
            } else if (point == 0x2066 || point == 0x2068 || point == 0x2069) {
                EXPECT_EQ(rest.indexOf(point), -1) << "an isolate that is not around what may have one";
            } else {
                EXPECT_NE(u_charType(point), U_FORMAT_CHAR);
                EXPECT_NE(u_charType(point), U_CONTROL_CHAR);
            }
        }
    });
}

TEST(AppTranslations, WritesWesternDigits) {
    forEveryText([](const Message&, std::string_view text) {
        for (const auto point : codePoints(text)) {
            EXPECT_TRUE(u_isdigit(point) == 0 || (point >= '0' && point <= '9'));
        }
    });
}

TEST(AppTranslations, JoinsHebrewPrefixesToLatinWordsWithoutABreak) {
    for (const auto& [name, entry, isName] : messages()) {
        EXPECT_EQ(entry.key.find('-'), std::string_view::npos) << name << ": use U+2011 or a maqaf";
    }
}

TEST(AppTranslations, RendersEveryMessageInEveryLanguage) {
    for (const auto& [name, entry, isName] : messages()) {
        const auto count = placeholderCount(entry.key);
        const std::vector<LocalizedText::Argument> arguments(count, LocalizedText::Argument("7"));
        for (const auto language : allLanguages) {
            const auto rendered = LocalizedText(std::string(entry.key), arguments).rendered(language);
            EXPECT_EQ(rendered.find("%@"), std::string::npos) << name;
            EXPECT_EQ(std::ranges::count(rendered, '7'), static_cast<std::ptrdiff_t>(count)) << name;
        }
    }
}

TEST(PlaceholderCount, CountsPlaceholdersOnly) {
    static_assert(placeholderCount("") == 0);
    static_assert(placeholderCount("%") == 0);
    static_assert(placeholderCount("%@") == 1);
    static_assert(placeholderCount("%@%@ %@") == 3);
    static_assert(placeholderCount("%%@ 100%") == 0);
    static_assert(placeholderCount("%%%@") == 1);
    static_assert(placeholderCount("@%d") == 0);
}

TEST(PlaceholderCount, ATextWithArgumentsMustDoubleItsPercentSigns) {
    static_assert(hasPlainPercents("100% sure"));
    static_assert(hasPlainPercents("%@ of 100%%"));
    static_assert(!hasPlainPercents("%@ of 100%"));
    static_assert(!hasPlainPercents("%@ of %d"));
}

} // namespace
} // namespace quillane::core

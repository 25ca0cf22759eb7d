// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/Measurement.hpp"

#include "core/clipboard/ClipboardHistory.hpp"
#include "core/keyboard/Retyping.hpp"
#include "core/support/Characters.hpp"
#include "support/KeyboardLayouts.hpp"

#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace quillane::bench {

namespace {

using core::ClipboardEntry;

/// Texts of alternating words, each with this many characters, that contain none of the words searched for.
core::ClipboardHistory historyOf(int count, std::size_t characters, std::string_view words, core::Date date) {
    std::string text;
    while (text.size() < 4 * characters + words.size()) {
        text += words;
        text += ' ';
    }
    text.resize(core::firstCharacters(text, characters).size());
    core::ClipboardHistory history;
    core::ClipboardOptions options;
    options.limit = 1'000;
    options.storageMB = 1'000;
    for (int i = 0; i < count; ++i) {
        auto own = std::to_string(i) + text;
        own.resize(core::firstCharacters(own, characters).size());
        const auto bytes = std::as_bytes(std::span(own));
        auto entry = ClipboardEntry::make(
            core::ClipboardKind::text, own, "com.example.editor", "Editor",
            {{{"public.utf8-plain-text", std::vector<std::byte>(bytes.begin(), bytes.begin() + 8)}}}, date);
        entry.digest = std::to_string(i);
        entry.pinned = i >= 1'000; // up to 200 pins are kept outside the limit
        if (!history.insert(std::move(entry), options)) {
            throw std::runtime_error("the history is not as large as it should be");
        }
    }
    return history;
}

/// The slowest keystroke of typing a word, each the fastest of several runs: other programs only add to it.
double slowestKeystroke(const core::ClipboardHistory& history, std::u32string_view word,
                        std::string (*utf8)(std::u32string_view)) {
    double slowest = 0;
    for (std::size_t length = 1; length <= word.size(); ++length) {
        const auto query = utf8(word.substr(0, length));
        double fastest = 1e9;
        for (int run = 0; run < 15; ++run) {
            fastest = std::min(fastest, secondsOf([&] { static_cast<void>(history.filtered(query, {})); }));
        }
        slowest = std::max(slowest, fastest);
    }
    return slowest * 1e3;
}

/// What searching for the text of the other keyboard layout adds to the slowest keystroke of typing "akuo".
double slowestRetypedKeystroke(const core::ClipboardHistory& history) {
    const std::array sources{core::retyping::Source{false, testing::englishLayout()},
                             core::retyping::Source{true, testing::hebrewLayout()}};
    constexpr std::string_view word = "akuo";
    double slowest = 0;
    for (std::size_t length = 1; length <= word.size(); ++length) {
        double fastest = 1e9;
        for (int run = 0; run < 15; ++run) {
            fastest = std::min(fastest, secondsOf([&] {
                                   const auto query = word.substr(0, length);
                                   const auto way = core::retyping::way(query, sources);
                                   const auto retyped =
                                       core::retyping::retyped(query, sources[way->from].layout,
                                                               sources[way->to].layout, core::retyping::CapsLock::off);
                                   static_cast<void>(history.filtered(retyped, {}));
                               }));
        }
        slowest = std::max(slowest, fastest);
    }
    return slowest * 1e3;
}

std::string toUtf8(std::u32string_view text) {
    std::string bytes;
    for (const char32_t c : text) {
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else if (c < 0x800) {
            bytes += {static_cast<char>(0xC0U | c >> 6U), static_cast<char>(0x80U | (c & 0x3FU))};
        } else {
            bytes += {static_cast<char>(0xE0U | c >> 12U), static_cast<char>(0x80U | (c >> 6U & 0x3FU)),
                      static_cast<char>(0x80U | (c & 0x3FU))};
        }
    }
    return bytes;
}

/// The same bytes by memmem(3), which neither folds nor knows characters.
double plainSearch(const core::ClipboardHistory& history, std::string_view needle) {
    double fastest = 1e9;
    for (int run = 0; run < 5; ++run) {
        fastest = std::min(fastest, secondsOf([&] {
                               for (const auto& entry : history.entries()) {
                                   if (memmem(entry.text->data(), entry.text->size(), needle.data(), needle.size()) !=
                                       nullptr) {
                                       throw std::runtime_error("a word is there that should not be");
                                   }
                               }
                           }));
    }
    return fastest * 1e3;
}

} // namespace

bool measureSearch() {
    struct Script {
        const char* name;
        std::string_view words;
        std::u32string_view query;
    };

    constexpr std::array scripts{
        Script{"English", "the quick brown fox jumps over the lazy dog", U"the lazy cat"},
        Script{"Hebrew", "דג סקרן שט בים מאוכזב ולפתע מצא חברה", U"דג סקרנית"},
        Script{"pointed Hebrew", "בְּרֵאשִׁית בָּרָא אֱלֹהִים אֵת הַשָּׁמַיִם", U"בראשיתכ"},
        Script{"Arabic", "نص حكيم له سر قاطع وذو شأن عظيم", U"نص حكيمة"},
        Script{"Hebrew, Arabic and English", "דג סקרן the quick fox نص حكيم", U"דג סקרנית"},
        Script{"Chinese", "你好世界今天天气很好我们去公园", U"你好世间"},
    };
    const auto hebrew = historyOf(1'000, 2'048, scripts[1].words, core::Date{1});
    bool areMet = report("the other layout's text, 1,000 entries of 2,048 characters, Hebrew",
                         slowestRetypedKeystroke(hebrew), "ms", 1);
    for (const auto& script : scripts) {
        const auto small = historyOf(1'000, 2'048, script.words, core::Date{1});
        areMet = report(std::string("filtered, 1,000 entries of 2,048 characters, ") + script.name,
                        slowestKeystroke(small, script.query, toUtf8), "ms", 1) &&
                 areMet;
        const auto large = historyOf(1'200, ClipboardEntry::maximumTextCharacters, script.words, core::Date{1});
        areMet = report(std::string("filtered, 1,200 entries of 100,000 characters, ") + script.name,
                        slowestKeystroke(large, script.query, toUtf8), "ms", 16) &&
                 areMet;
        std::printf("    memmem over the same texts: %.3f ms\n", plainSearch(large, toUtf8(script.query)));
    }
    return areMet;
}

} // namespace quillane::bench

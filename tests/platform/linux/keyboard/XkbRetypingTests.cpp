// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/Retyping.hpp"

#include "platform/linux/keyboard/XkbDefinitions.hpp"

#include <QString>
#include <QStringList>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>
#include <string_view>
#include <tuple>
#include <vector>

namespace quillane {
namespace {

using core::KeyboardLayout;
using core::KeyStroke;
using core::retyping::CapsLock;
using testing::XkbDefinition;
using testing::XkbDefinitions;

/// No layout types it, so it separates texts that are retyped in one go.
constexpr char32_t separator = 0xe000;

/// Code points that no layout of the test types: marks and isolates, which some do type, must not be retyped either.
constexpr std::array kept{U'\u200e', U'\u200f', U'\u2067', U'\u2069', U'\U0001f600', U'\n', U'\u6f22'};

std::string utf8(std::u32string_view text) {
    return QString::fromUcs4(text.data(), static_cast<qsizetype>(text.size())).toStdString();
}

std::u32string retyped(std::u32string_view text, const KeyboardLayout& from, const KeyboardLayout& to,
                       CapsLock capsLock = CapsLock::off) {
    return QString::fromStdString(core::retyping::retyped(utf8(text), from, to, capsLock)).toStdU32String();
}

/// Each text retyped as if it were alone.
std::vector<std::u32string> eachRetyped(const std::vector<std::u32string>& texts, const KeyboardLayout& from,
                                        const KeyboardLayout& to, CapsLock capsLock = CapsLock::off) {
    std::u32string joined;
    for (const auto& text : texts) {
        joined += text + separator;
    }
    std::vector<std::u32string> results{U""};
    for (const auto c : retyped(joined, from, to, capsLock)) {
        if (c == separator) {
            results.emplace_back();
        } else {
            results.back() += c;
        }
    }
    results.pop_back();
    return results;
}

bool isDirectionControl(const std::u32string& text) {
    static const std::u32string_view controls =
        U"\u061c\u200e\u200f\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069";
    return text.find_first_of(controls) != std::u32string::npos;
}

/// The simplest stroke for each text that one stroke types.
std::map<std::u32string, KeyStroke> simplestStrokes(const XkbDefinition& definition, bool capsLock) {
    std::map<std::u32string, KeyStroke> simplest;
    const auto effort = [&](const KeyStroke& stroke) {
        return std::tuple(definition.layout.outputs.at(stroke).isDead, stroke.option, stroke.shift, stroke.keyCode);
    };
    for (const auto& [stroke, text] : definition.typed) {
        if (stroke.capsLock == capsLock) {
            const auto [found, isNew] = simplest.try_emplace(text, stroke);
            if (!isNew && effort(stroke) < effort(found->second)) {
                found->second = stroke;
            }
        }
    }
    return simplest;
}

class XkbRetypingTest : public ::testing::Test {
protected:
    static const XkbDefinitions& definitions() {
        static const auto all = testing::readXkbDefinitions();
        return all;
    }

    /// Calls `check(from, to)` for every pair of a right-to-left and an English layout, in both ways.
    template <typename Check>
    static void forEveryPair(Check check) {
        int pairs = 0;
        for (const auto& rightToLeft : definitions().rightToLeft) {
            for (const auto& english : definitions().english) {
                SCOPED_TRACE(rightToLeft.name + " and " + english.name);
                check(rightToLeft, english);
                check(english, rightToLeft);
                ++pairs;
                if (HasFailure()) {
                    return; // one pair is enough to read
                }
            }
        }
        RecordProperty("pairs", pairs);
    }
};

TEST_F(XkbRetypingTest, DefinitionsIncludeTheLayoutsOfEachLanguage) {
    std::set<std::string> names;
    for (const auto* kind : {&definitions().rightToLeft, &definitions().english}) {
        for (const auto& definition : *kind) {
            names.insert(definition.name);
            EXPECT_GE(definition.typed.size(), 50U) << definition.name;
        }
    }
    EXPECT_THAT(names, ::testing::IsSupersetOf({"il", "il(phonetic)", "il(lyx)", "il(biblical)", "ara", "ara(mac)",
                                                "ir", "pk", "us", "us(intl)", "us(dvorak)", "gb"}));
    RecordProperty("rightToLeft", static_cast<int>(definitions().rightToLeft.size()));
    RecordProperty("english", static_cast<int>(definitions().english.size()));
}

TEST_F(XkbRetypingTest, LayoutsHoldWhatTheKeysType) {
    for (const auto* kind : {&definitions().rightToLeft, &definitions().english}) {
        for (const auto& definition : *kind) {
            std::map<KeyStroke, std::u32string> read;
            for (const auto& [stroke, output] : definition.layout.outputs) {
                read.emplace(stroke, output.text);
            }
            EXPECT_EQ(read, definition.typed) << definition.name;
        }
    }
}

TEST_F(XkbRetypingTest, EveryKeyTypesWhatItTypesInTheOtherLayout) {
    forEveryPair([](const XkbDefinition& from, const XkbDefinition& to) {
        for (const bool capsLock : {false, true}) {
            std::vector<std::u32string> texts;
            std::vector<std::u32string> expected;
            for (const auto& [text, stroke] : simplestStrokes(from, capsLock)) {
                auto result = to.typed.find(stroke);
                if (capsLock && result != to.typed.end() && result->second == text) {
                    const KeyStroke plain{stroke.keyCode, stroke.shift, stroke.option, false};
                    result = to.typed.contains(plain) ? to.typed.find(plain) : result;
                }
                texts.push_back(text);
                expected.push_back(result == to.typed.end() || isDirectionControl(text) ? text : result->second);
            }
            EXPECT_EQ(eachRetyped(texts, from.layout, to.layout, capsLock ? CapsLock::on : CapsLock::off), expected)
                << "from " << from.name << (capsLock ? " with Caps Lock" : "");
        }
    });
}

TEST_F(XkbRetypingTest, RetypingInTheSameLayoutChangesNothing) {
    std::mt19937 random(20261122);
    for (const auto* kind : {&definitions().rightToLeft, &definitions().english}) {
        for (const auto& [name, layout, typed] : *kind) {
            std::vector<std::u32string> units(1, U"\n");
            for (const auto& [stroke, output] : layout.outputs) {
                units.push_back(output.text);
            }
            for (const auto& [strokes, text] : layout.compositions) {
                units.push_back(text);
            }
            for (int round = 0; round < 50; ++round) {
                std::u32string text;
                while (text.size() < 40) {
                    text += units[random() % units.size()];
                }
                EXPECT_EQ(utf8(retyped(text, layout, layout)), utf8(text)) << name;
            }
        }
    }
}

/// The texts of several characters that the layout types in one piece.
const std::set<std::u32string>& longTexts(const XkbDefinition& definition) {
    static std::map<std::string, std::set<std::u32string>> known;
    const auto [found, isNew] = known.try_emplace(definition.name);
    auto& texts = found->second;
    if (isNew) {
        for (const auto& [stroke, output] : definition.layout.outputs) {
            texts.insert(output.text);
        }
        for (const auto& [strokes, text] : definition.layout.compositions) {
            texts.insert(text);
        }
        std::erase_if(texts, [](const auto& text) { return text.size() == 1; });
    }
    return texts;
}

/// Whether the end of one text and the beginning of the next are together one of those.
bool meet(const std::set<std::u32string>& longTexts, std::u32string_view first, std::u32string_view second) {
    return std::ranges::any_of(longTexts, [&](std::u32string_view text) {
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (first.ends_with(text.substr(0, i)) && second.starts_with(text.substr(i))) {
                return true;
            }
        }
        return false;
    });
}

bool isAccent(const KeyboardLayout& layout, const std::u32string& text) {
    return std::ranges::any_of(layout.outputs, [&](const auto& entry) {
        return entry.second.isDead && text.find(entry.second.text) != text.npos;
    });
}

TEST_F(XkbRetypingTest, RoundTripGivesTheSameText) {
    std::mt19937 random(20261122);
    forEveryPair([&](const XkbDefinition& from, const XkbDefinition& to) {
        // What comes back when it is alone: its image is typed by the same keys.
        std::vector<std::u32string> texts;
        for (const auto& [text, stroke] : simplestStrokes(from, false)) {
            texts.push_back(text);
        }
        const auto images = eachRetyped(texts, from.layout, to.layout);
        const auto back = eachRetyped(images, to.layout, from.layout);
        std::vector<std::pair<std::u32string, std::u32string>> units;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (back[i] == texts[i] && !isAccent(from.layout, texts[i]) && !isAccent(to.layout, images[i])) {
                units.emplace_back(texts[i], images[i]);
            }
        }
        ASSERT_GE(units.size(), 30U);
        std::u32string text;
        std::u32string image;
        for (int i = 0; i < 100; ++i) {
            const auto& [next, nextImage] = units[random() % units.size()];
            if (random() % 5 == 0 || meet(longTexts(from), text, next) || meet(longTexts(to), image, nextImage)) {
                const auto mark = kept[random() % kept.size()];
                text += mark;
                image += mark;
            }
            text += next;
            image += nextImage;
        }
        EXPECT_EQ(utf8(retyped(text, from.layout, to.layout)), utf8(image)) << "from " << from.name;
        EXPECT_EQ(utf8(retyped(image, to.layout, from.layout)), utf8(text)) << "from " << to.name;
    });
}

} // namespace
} // namespace quillane

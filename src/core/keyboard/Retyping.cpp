// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/Retyping.hpp"

#include "core/keyboard/TypingIndex.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace quillane::core::retyping {

namespace {

constexpr char32_t illFormed = 0xffffffff; ///< in place of bytes that are not UTF-8; no layout types it

/// The code points of a text and where their bytes begin, with the end of the text as the last one.
struct CodePoints {
    std::u32string text;
    std::vector<std::size_t> begins;

    explicit CodePoints(std::string_view utf8) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
        const auto size = static_cast<std::int64_t>(utf8.size());
        for (std::int64_t at = 0; at < size;) {
            begins.push_back(static_cast<std::size_t>(at));
            UChar32 codePoint = 0;
            U8_NEXT(bytes, at, size, codePoint);
            text += codePoint < 0 ? illFormed : static_cast<char32_t>(codePoint);
        }
        begins.push_back(utf8.size());
    }
};

/// A part of the text and the strokes that type it; none when it stays.
struct Piece {
    std::size_t begin; ///< in code points, as the next
    std::size_t end;
    Typing typing;
};

std::vector<Piece> pieces(std::u32string_view text, const KeyboardLayout& layout, const TypingIndex& index) {
    std::vector<Piece> found;
    for (std::size_t at = 0; at < text.size();) {
        const auto [length, typing] = index.longest(text.substr(at));
        const auto end = at + std::max<std::size_t>(length, 1);
        found.push_back({at, end, typing});
        at = end;
    }
    // An accent stands alone only before a key that it does not compose with; else it was followed by a space.
    for (std::size_t i = 0; i + 1 < found.size(); ++i) {
        auto& typing = found[i].typing;
        const auto& next = found[i + 1].typing.strokes;
        if (!typing.endsWithDeadKey || next.empty()) {
            continue;
        }
        const auto dead = typing.strokes.back();
        if (layout.compositions.contains({dead, next.front()})) {
            const auto spaced =
                layout.compositions.find({dead, KeyStroke{.keyCode = spaceKey, .capsLock = dead.capsLock}});
            const bool isTyped = spaced != layout.compositions.end() &&
                                 spaced->second == text.substr(found[i].begin, found[i].end - found[i].begin);
            typing = isTyped ? Typing{{dead, spaced->first.second}, false} : Typing{};
        }
    }
    return found;
}

/// The text that strokes give in a layout.
class Typist {
public:
    Typist(const KeyboardLayout& layout, CapsLock capsLock) : layout_(layout), capsLock_(capsLock) {}

    [[nodiscard]] bool types(const std::vector<KeyStroke>& strokes) const {
        return !strokes.empty() &&
               std::ranges::all_of(strokes, [&](const auto& stroke) { return layout_.outputs.contains(stroke); });
    }

    /// Types one of those strokes in place of `original`.
    void type(KeyStroke stroke, std::u32string_view original) {
        const auto plain = withoutCapsLock(stroke);
        if (capsLock_ == CapsLock::on && layout_.outputs.at(stroke).text == original &&
            layout_.outputs.contains(plain)) {
            stroke = plain;
        }
        if (dead_) {
            const auto composed = layout_.compositions.find({*dead_, stroke});
            if (composed != layout_.compositions.end()) {
                append(composed->second);
                dead_.reset();
                return;
            }
            finishAccent();
        }
        const auto& output = layout_.outputs.at(stroke);
        if (output.isDead) {
            dead_ = stroke;
        } else {
            append(output.text);
        }
    }

    /// Ends the accent of a dead key that nothing follows.
    void finishAccent() {
        if (dead_) {
            append(layout_.outputs.at(*dead_).text);
            dead_.reset();
        }
    }

    void keep(std::string_view bytes) {
        finishAccent();
        text_ += bytes;
    }

    [[nodiscard]] std::string take() {
        finishAccent();
        return std::move(text_);
    }

private:
    static KeyStroke withoutCapsLock(KeyStroke stroke) {
        stroke.capsLock = false;
        return stroke;
    }

    void append(std::u32string_view text) {
        icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(text.data()),
                                      static_cast<std::int32_t>(text.size()))
            .toUTF8String(text_);
    }

    const KeyboardLayout& layout_;
    CapsLock capsLock_;
    std::string text_;
    std::optional<KeyStroke> dead_; ///< pressed last
};

/// Whether the code point is a letter of a script in this direction.
bool isLetter(char32_t codePoint, bool rightToLeft) {
    const auto c = static_cast<UChar32>(codePoint);
    if (u_isalpha(c) == 0) {
        return false;
    }
    const auto direction = u_charDirection(c);
    return rightToLeft ? direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC
                       : direction == U_LEFT_TO_RIGHT;
}

} // namespace

std::string retyped(std::string_view text, const KeyboardLayout& from, const KeyboardLayout& to, CapsLock capsLock) {
    const CodePoints codePoints(text);
    const TypingIndex index(from, capsLock == CapsLock::on);
    Typist typist(to, capsLock);
    for (const auto& [begin, end, typing] : pieces(codePoints.text, from, index)) {
        if (!typist.types(typing.strokes)) {
            const auto first = codePoints.begins[begin];
            typist.keep(text.substr(first, codePoints.begins[end] - first));
            continue;
        }
        for (const auto& stroke : typing.strokes) {
            typist.type(stroke, std::u32string_view(codePoints.text).substr(begin, end - begin));
        }
    }
    return typist.take();
}

std::optional<Way> way(std::string_view text, std::span<const Source> sourcesByUse) {
    const auto letters = CodePoints(text).text;
    std::optional<std::size_t> from;
    std::ptrdiff_t maximumTyped = 0;
    for (std::size_t i = 0; i < sourcesByUse.size(); ++i) {
        const auto& source = sourcesByUse[i];
        const TypingIndex index(source.layout, false);
        const auto typed = std::ranges::count_if(letters, [&](char32_t c) {
            return isLetter(c, source.isRightToLeft) && index.types(std::u32string_view(&c, 1));
        });
        if (typed > maximumTyped) {
            from = i;
            maximumTyped = typed;
        }
    }
    const bool hasLetters =
        std::ranges::any_of(letters, [](char32_t c) { return u_isalpha(static_cast<UChar32>(c)) != 0; });
    if (!from && !hasLetters && !sourcesByUse.empty()) {
        from = 0;
    }
    for (std::size_t to = 0; from && to < sourcesByUse.size(); ++to) {
        if (sourcesByUse[to].isRightToLeft != sourcesByUse[*from].isRightToLeft) {
            return Way{*from, to};
        }
    }
    return std::nullopt;
}

} // namespace quillane::core::retyping

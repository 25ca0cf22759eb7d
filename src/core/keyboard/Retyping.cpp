// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/Retyping.hpp"

#include "core/keyboard/TypedPieces.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace quillane::core::retyping {

namespace {

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
    for (const auto& [begin, end, typing] : typedPieces(codePoints.text, from, index)) {
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

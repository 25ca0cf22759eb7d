// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypedWords.hpp"

#include "core/keyboard/TypedPieces.hpp"

#include <algorithm>

#include <unicode/uchar.h>

namespace quillane::core::retyping {

namespace {

constexpr char32_t lastOfBasicPlane = 0xffff;

bool isSpace(char32_t codePoint) {
    return u_isUWhiteSpace(static_cast<UChar32>(codePoint)) != 0;
}

/// Places in code points.
struct Word {
    std::size_t begin;
    std::size_t end;
};

Word lastWordOf(std::u32string_view text) {
    const auto end = std::ranges::find_if_not(text.rbegin(), text.rend(), isSpace);
    const auto begin = std::find_if(end, text.rend(), isSpace);
    return {static_cast<std::size_t>(text.rend() - begin), static_cast<std::size_t>(text.rend() - end)};
}

} // namespace

std::string_view lastWord(std::string_view text, std::size_t maximum) {
    const CodePoints codePoints(text);
    const auto [begin, end] = lastWordOf(codePoints.text);
    const auto first = codePoints.begins[std::max(begin, end - std::min(end, maximum))];
    return text.substr(first, codePoints.begins[end] - first);
}

std::optional<TypedWord> lastTypedWord(std::string_view text, const KeyboardLayout& layout, CapsLock capsLock,
                                       std::size_t strokes) {
    const CodePoints codePoints(text);
    const auto word = lastWordOf(codePoints.text);
    const TypingIndex index(layout, capsLock == CapsLock::on);
    const auto tail = std::u32string_view(codePoints.text).substr(word.begin);
    auto pieces = typedPieces(tail, layout, index);
    std::size_t needed = 0;
    std::size_t begin = codePoints.text.size();
    std::ranges::reverse(pieces); // the last ones first
    for (const auto& piece : pieces) {
        const auto more = std::max<std::size_t>(piece.typing.strokes.size(), 1);
        if (needed + more > strokes) {
            break;
        }
        needed += more;
        begin = word.begin + piece.begin;
    }
    if (begin >= word.end) {
        return std::nullopt;
    }
    return TypedWord{codePoints.begins[begin], codePoints.begins[word.end], needed};
}

std::int64_t lengthIn(TextUnit unit, std::string_view text) {
    const auto codePoints = CodePoints(text).text;
    const auto beyond = std::ranges::count_if(codePoints, [](char32_t c) { return c > lastOfBasicPlane; });
    return static_cast<std::int64_t>(codePoints.size()) + (unit == TextUnit::utf16 ? beyond : 0);
}

std::optional<TextUnit> unitOf(std::string_view text, std::int64_t length) {
    for (const auto unit : {TextUnit::codePoint, TextUnit::utf16}) {
        if (lengthIn(unit, text) == length) {
            return unit;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core::retyping

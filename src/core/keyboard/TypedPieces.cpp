// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypedPieces.hpp"

#include <algorithm>
#include <cstdint>

#include <unicode/utf8.h>

namespace quillane::core {

namespace {

constexpr char32_t illFormed = 0xffffffff; ///< in place of bytes that are not UTF-8; no layout types it

} // namespace

CodePoints::CodePoints(std::string_view utf8) {
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

std::vector<TypedPiece> typedPieces(std::u32string_view text, const KeyboardLayout& layout, const TypingIndex& index) {
    std::vector<TypedPiece> found;
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

} // namespace quillane::core

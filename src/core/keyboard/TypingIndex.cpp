// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/TypingIndex.hpp"

#include "core/keyboard/LamAlef.hpp"

#include <algorithm>
#include <tuple>

#include <unicode/uchar.h>

namespace quillane::core {

namespace {

bool setsDirection(char32_t codePoint) {
    return u_hasBinaryProperty(static_cast<UChar32>(codePoint), UCHAR_BIDI_CONTROL) != 0;
}

} // namespace

TypingIndex::TypingIndex(const KeyboardLayout& layout, bool capsLock) : capsLock_(capsLock) {
    for (const auto& [stroke, output] : layout.outputs) {
        add(output.text, {{stroke}, output.isDead});
    }
    for (const auto& [strokes, text] : layout.compositions) {
        add(text, {{strokes.first, strokes.second}, false});
    }
    for (const auto& [letters, isolatedForm] : lamAlefs) {
        if (const auto found = typings_.find(letters); found != typings_.end()) {
            typings_.try_emplace(std::u32string(1, isolatedForm), found->second);
        }
    }
}

std::pair<std::size_t, Typing> TypingIndex::longest(std::u32string_view text) const {
    for (auto length = std::min(maximumLength_, text.size()); length > 0; --length) {
        if (const auto found = typings_.find(text.substr(0, length)); found != typings_.end()) {
            return {length, found->second};
        }
    }
    return {};
}

void TypingIndex::add(const std::u32string& text, const Typing& typing) {
    if (std::ranges::any_of(text, setsDirection)) {
        return;
    }
    maximumLength_ = std::max(maximumLength_, text.size());
    const auto [found, isNew] = typings_.try_emplace(text, typing);
    if (!isNew && isSimpler(typing, found->second)) {
        found->second = typing;
    }
}

bool TypingIndex::isSimpler(const Typing& a, const Typing& b) const {
    const auto effort = [this](const Typing& typing) {
        const auto& strokes = typing.strokes;
        return std::tuple(strokes.front().capsLock != capsLock_, strokes.size(), typing.endsWithDeadKey,
                          std::ranges::count(strokes, true, &KeyStroke::option),
                          std::ranges::count(strokes, true, &KeyStroke::shift));
    };
    return std::tuple(effort(a), a.strokes) < std::tuple(effort(b), b.strokes);
}

} // namespace quillane::core

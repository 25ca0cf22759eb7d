// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::core {

/// The strokes, one or two, that type a text.
struct Typing {
    std::vector<KeyStroke> strokes;
    bool endsWithDeadKey = false; ///< an accent, as long as the next key does not compose with it
};

/// A layout from texts to keys. Of several ways to type a text it holds the simplest: Caps Lock as it is, few strokes,
/// few modifiers. Characters that set the direction of text (Unicode property Bidi_Control) are not in it.
class TypingIndex {
public:
    TypingIndex(const KeyboardLayout& layout, bool capsLock);

    /// The length in code points of the longest beginning of the text that the layout types, and its strokes; 0 and no
    /// strokes when it types none.
    [[nodiscard]] std::pair<std::size_t, Typing> longest(std::u32string_view text) const;

    /// Whether the layout types the whole text in one piece.
    [[nodiscard]] bool types(std::u32string_view text) const { return typings_.contains(text); }

private:
    void add(const std::u32string& text, const Typing& typing);
    [[nodiscard]] bool isSimpler(const Typing& a, const Typing& b) const;

    bool capsLock_;
    std::map<std::u32string, Typing, std::less<>> typings_;
    std::size_t maximumLength_ = 0;
};

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/Retyping.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// Which words before the text cursor are to be retyped. Words are separated by white space: punctuation may be letters
/// in the other layout. Texts are UTF-8.
namespace quillane::core::retyping {

/// The last word of the text: its last characters (code points), `maximum` at most. Empty when the text has none.
[[nodiscard]] std::string_view lastWord(std::string_view text, std::size_t maximum);

/// A part of a text, in bytes.
struct TypedWord {
    std::size_t begin;
    std::size_t end;
    std::size_t strokes; ///< that typed the text from `begin` on, what follows the word included

    bool operator==(const TypedWord&) const = default;
};

/// The last word of a text whose end was typed with that many strokes in a layout, as far as it was typed with them;
/// none when none of it was. A character that the layout does not type counts as one stroke.
[[nodiscard]] std::optional<TypedWord> lastTypedWord(std::string_view text, const KeyboardLayout& layout,
                                                     CapsLock capsLock, std::size_t strokes);

/// The units in which applications count the characters of a text.
enum class TextUnit { codePoint, utf16 };

[[nodiscard]] std::int64_t lengthIn(TextUnit unit, std::string_view text);

/// The units of an application in which the text has that length; none when there are no such.
[[nodiscard]] std::optional<TextUnit> unitOf(std::string_view text, std::int64_t length);

} // namespace quillane::core::retyping

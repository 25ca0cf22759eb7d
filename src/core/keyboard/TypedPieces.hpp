// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/TypingIndex.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core {

/// The code points of a text and where their bytes begin, with the end of the text as the last one. Bytes that are not
/// UTF-8 stand as code points that no layout types.
struct CodePoints {
    std::u32string text;
    std::vector<std::size_t> begins;

    explicit CodePoints(std::string_view utf8);
};

/// A part of the text and the strokes that type it; none when no strokes do.
struct TypedPiece {
    std::size_t begin; ///< in code points, as the next
    std::size_t end;
    Typing typing;
};

/// The whole text in the pieces in which a layout types it.
[[nodiscard]] std::vector<TypedPiece> typedPieces(std::u32string_view text, const KeyboardLayout& layout,
                                                  const TypingIndex& index);

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Text that was typed in the wrong layout, as the same keys type it in another one. Texts are UTF-8.
namespace quillane::core::retyping {

enum class CapsLock : bool { off, on };

/// What the strokes that type the text in one layout, with Caps Lock as given where it has a choice, type in another
/// one. Stays as it is: what either layout cannot type, characters that set the direction of text (Unicode property
/// Bidi_Control) and ill-formed bytes. Where Caps Lock would only leave a letter unchanged it does not count.
[[nodiscard]] std::string retyped(std::string_view text, const KeyboardLayout& from, const KeyboardLayout& to,
                                  CapsLock capsLock);

/// An input source whose layout is known.
struct Source {
    bool isRightToLeft = false;
    KeyboardLayout layout;
};

/// Two sources, by their places in a list.
struct Way {
    std::size_t from;
    std::size_t to;

    bool operator==(const Way&) const = default;
};

/// From the source that types most of the text's letters (of its own direction), among equals the one used last, to the
/// source of the other direction that was used last. None without such a source, or when no source types any of the
/// letters. The sources are in the order of their use, the one in effect first.
[[nodiscard]] std::optional<Way> way(std::string_view text, std::span<const Source> sourcesByUse);

} // namespace quillane::core::retyping

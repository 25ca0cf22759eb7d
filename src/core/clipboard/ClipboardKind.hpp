// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillane::core {

/// What one entry of the clipboard history holds.
enum class ClipboardKind {
    text,  ///< plain or styled text, or a web address
    image, ///< bitmap image data
    files, ///< one or more file references
};

inline constexpr std::array allClipboardKinds{ClipboardKind::text, ClipboardKind::image, ClipboardKind::files};

/// The name that a kind is stored by.
[[nodiscard]] constexpr std::string_view rawValue(ClipboardKind kind) {
    constexpr std::array<std::string_view, allClipboardKinds.size()> names{"text", "image", "files"};
    return names[static_cast<std::size_t>(kind)];
}

/// The kind with exactly that name.
[[nodiscard]] constexpr std::optional<ClipboardKind> clipboardKind(std::string_view name) {
    for (const auto kind : allClipboardKinds) {
        if (rawValue(kind) == name) {
            return kind;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core

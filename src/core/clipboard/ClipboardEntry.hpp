// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardKind.hpp"
#include "core/support/Date.hpp"
#include "core/support/Shared.hpp"
#include "core/support/Uuid.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core {

using SharedBytes = Shared<std::vector<std::byte>>;

/// One flavour of one pasteboard item.
struct ClipboardRepresentation {
    std::string type; ///< a uniform type identifier
    SharedBytes data;

    bool operator==(const ClipboardRepresentation&) const = default;
};

/// The kept flavours of each item, in the order of the pasteboard.
using ClipboardItems = std::vector<std::vector<ClipboardRepresentation>>;

/// One entry of the clipboard history. Copies share text and contents.
struct ClipboardEntry {
    Uuid id;            ///< the same for the entry's life, also across launches
    std::string digest; ///< 64 lower-case hexadecimal digits; equal digests are the same content
    ClipboardKind kind = ClipboardKind::text;
    Shared<std::string> text; ///< UTF-8 to show and to search, at most `maximumTextCharacters`
    std::string source;       ///< bundle identifier of the application that it was copied from; may be empty
    std::string sourceName;   ///< that application's display name
    Date createdAt;
    Date copiedAt; ///< when it was last copied or used from the history
    bool pinned = false;
    Shared<ClipboardItems> items;

    static constexpr std::size_t maximumTextCharacters = 100'000;

    bool operator==(const ClipboardEntry&) const = default;

    /// A new entry, copied now, with a fresh identifier. Texts are made valid UTF-8, and `text` is cut. It may be a
    /// part of the items' contents.
    [[nodiscard]] static ClipboardEntry make(ClipboardKind kind, std::string_view text, std::string source,
                                             std::string sourceName, ClipboardItems items, Date now);

    /// The bytes of all contents together, which is what limits count.
    [[nodiscard]] std::size_t byteCount() const;
};

/// The fingerprint of contents: SHA-256 over the kind and, for each item, its representations in the order of their
/// types.
[[nodiscard]] std::string clipboardDigest(ClipboardKind kind, const ClipboardItems& items);

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/clipboard/ClipboardPrivacy.hpp"
#include "core/clipboard/PasteboardContents.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core::clipboardSnapshot {

/// The maximum size of one entry, in bytes.
inline constexpr std::size_t maximumBytes = 20 * 1'048'576;
inline constexpr std::size_t maximumItems = 100;
inline constexpr std::size_t maximumSourceCharacters = 256;

/// The moment at which a change of the pasteboard was seen.
struct Moment {
    std::string foreground; ///< bundle identifier of the application in front; may be empty
    std::string sourceName; ///< its display name
    bool secureInput = false;
    Date now;
};

/// Makes an entry from the pasteboard, or none when its contents may not or cannot be kept.
[[nodiscard]] std::optional<ClipboardEntry> capture(const PasteboardContents& pasteboard,
                                                    const ClipboardOptions& options, const Moment& moment);

/// The types that `capture` would read from a pasteboard that offers these. Empty when it would keep nothing, so that
/// nothing needs to be fetched. While the text of an offered source marker is unknown, only the marker, because
/// `capture` may refuse by it before it reads anything else.
[[nodiscard]] std::vector<std::string_view> wantedTypes(const PasteboardTypeSet& types, const ClipboardOptions& options,
                                                        const Moment& moment = {},
                                                        const std::optional<std::string>& source = std::nullopt);

enum class RestoreMode { full, plainText };

/// Writes the entry to the pasteboard. False, with the pasteboard unchanged, when the entry has no plain text to write
/// or refers to a file that is gone; false too when the system refuses.
[[nodiscard]] bool restore(const ClipboardEntry& entry, PasteboardContents& pasteboard, RestoreMode mode);

} // namespace quillane::core::clipboardSnapshot

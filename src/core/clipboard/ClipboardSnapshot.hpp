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

/// The most bytes that one entry may hold.
inline constexpr std::size_t maximumBytes = 20 * 1'048'576;
inline constexpr std::size_t maximumItems = 100;
inline constexpr std::size_t maximumSourceCharacters = 256;

/// The moment at which a change of the pasteboard was seen.
struct Moment {
    std::string foreground; ///< bundle identifier of the application in front; may be empty
    std::string sourceName; ///< its name for people
    bool secureInput = false;
    Date now;
};

/// Makes an entry of what is on the pasteboard, or nothing when it may not or cannot be kept.
[[nodiscard]] std::optional<ClipboardEntry> capture(const PasteboardContents& pasteboard,
                                                    const ClipboardOptions& options, const Moment& moment);

/// The types that `capture` would read of a pasteboard that offers these. Empty when it would keep nothing of it, so
/// that nothing has to be fetched. While the text of a source marker on offer is not known, only the marker: `capture`
/// refuses by it before it reads anything else.
[[nodiscard]] std::vector<std::string_view> wantedTypes(const PasteboardTypeSet& types, const ClipboardOptions& options,
                                                        const Moment& moment = {},
                                                        const std::optional<std::string>& source = std::nullopt);

enum class RestoreMode { full, plainText };

/// Writes the entry to the pasteboard. False, with the pasteboard as it was, when the entry has no plain text to give
/// or refers to a file that is gone; false as well when the system refuses.
[[nodiscard]] bool restore(const ClipboardEntry& entry, PasteboardContents& pasteboard, RestoreMode mode);

} // namespace quillane::core::clipboardSnapshot

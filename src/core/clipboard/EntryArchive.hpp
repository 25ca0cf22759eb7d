// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// The plaintext of a vault's files: binary property lists.
namespace quillane::core::entryArchive {

/// The maximum size of a file that is written: an entry's contents, and its text in UTF-16.
inline constexpr std::size_t maximumBytes = 64 * 1'048'576;

/// A dictionary of an entry's fields by their names. None when it is larger than `maximumBytes`.
[[nodiscard]] std::optional<std::vector<std::byte>> encode(const ClipboardEntry& entry);

/// None when a key is missing or a value has another type. Unknown keys are ignored.
[[nodiscard]] std::optional<ClipboardEntry> decode(std::span<const std::byte> propertyList);

/// An array of identifiers as text.
[[nodiscard]] std::optional<std::vector<std::byte>> encodeIndex(std::span<const Uuid> ids);

/// None when it is anything else, or names an entry twice.
[[nodiscard]] std::optional<std::vector<Uuid>> decodeIndex(std::span<const std::byte> propertyList);

} // namespace quillane::core::entryArchive

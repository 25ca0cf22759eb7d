// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>

/// Whole transfers over open descriptors. Interrupted calls are repeated; each failure leaves its reason in errno.
namespace quillane::core {

/// Writes all of it; false on an error, when any part of it may have been written.
[[nodiscard]] bool writeAll(int descriptor, std::span<const std::byte> contents);

/// Fills the buffer. Returns the number of bytes, fewer than its size only at the end of the file; none on an error.
[[nodiscard]] std::optional<std::size_t> readAll(int descriptor, std::span<std::byte> buffer);

/// Returns once the file's contents, or the folder's names, are on the disk itself and not only in the drive's cache.
/// False when the system cannot confirm it.
[[nodiscard]] bool flushToDisk(int descriptor);

/// `flushToDisk` of a folder's names: renames, creations and removals in it survive a power loss.
[[nodiscard]] bool flushFolderToDisk(const std::filesystem::path& folder);

} // namespace quillane::core

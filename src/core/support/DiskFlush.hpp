// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// Returns once the file's contents, or the folder's names, are on the disk itself and not only in the drive's cache.
/// False, with errno set, when the system cannot confirm it.
[[nodiscard]] bool flushToDisk(int descriptor);

} // namespace quillane::core

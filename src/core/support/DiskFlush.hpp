// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// Returns once what was written to the file, or the names in the folder, are on the disk itself and not only in the
/// drive's cache. False, with errno set, when the system cannot say so.
[[nodiscard]] bool flushToDisk(int descriptor);

} // namespace quillane::core

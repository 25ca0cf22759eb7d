// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace quillane::bench {

/// Drops the system's cache of the files in a folder, so that they are read from the disk.
void dropFileCache(const std::filesystem::path& folder);

} // namespace quillane::bench

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillane::live {

/// All bytes of a file; empty when it cannot be read.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

/// Replaces the file; false when it cannot be written.
[[nodiscard]] bool writeFile(const std::filesystem::path& path, std::string_view content);

} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace quillane {

/// Whether the folder is this user's, not a symbolic link, and closed to everybody else (mode 0700 or less).
[[nodiscard]] bool isPrivateFolder(const std::filesystem::path& folder);

/// Whether the other end of a connected Unix socket belongs to this user (SO_PEERCRED, getpeereid(3)): for a listener,
/// the process that called listen(2).
[[nodiscard]] bool isPeerThisUser(int socket);

} // namespace quillane

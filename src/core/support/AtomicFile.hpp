// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillane::core {

/// Why a file could not be read or written: the system's error number (errno.h).
struct FileError {
    int number = 0;

    /// The system's description, for logs and standard error.
    [[nodiscard]] std::string message() const;

    bool operator==(const FileError&) const = default;
};

/// The whole file. EFBIG when it is larger than the limit; EINVAL when it is not a regular file. Never waits for the
/// other end of a pipe.
[[nodiscard]] tl::expected<std::vector<std::byte>, FileError> readFile(const std::filesystem::path& file,
                                                                       std::size_t maximumBytes);

/// Replaces the file at once: a temporary in the same folder is written, flushed to the disk and renamed, so that a
/// kill or power cut at any instant leaves the old content or the new. The file has exactly this mode afterwards. A
/// symbolic link stays, and the file it points to is replaced. On an error nothing has changed.
[[nodiscard]] tl::expected<void, FileError> writeFileAtomically(const std::filesystem::path& file,
                                                                std::span<const std::byte> content, mode_t mode);

/// Deletes temporaries that killed writers of this file have left behind. Call it only while nothing else writes the
/// file.
void removeAbandonedTemporaries(const std::filesystem::path& file);

/// Creates the folder and its missing parents, each with mode 0700 whatever the umask(2). An existing one is left as it
/// is.
[[nodiscard]] tl::expected<void, FileError> createPrivateFolder(const std::filesystem::path& folder);

} // namespace quillane::core

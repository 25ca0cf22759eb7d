// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/FileDescriptor.hpp"

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quillane::core {

/// What failed in a clipboard vault. Nothing of the contents is in it.
struct VaultError {
    enum class Reason {
        noKey,        ///< the key is not available now
        inUse,        ///< another program writes this vault
        wrongKeySize, ///< the key is not 32 bytes
        folder,       ///< the folder cannot be made, opened or listed
        read,         ///< a file is missing or cannot be read
        write,        ///< a file cannot be written, renamed or removed
        tooLarge,     ///< a file is larger than any that is written
        notAuthentic, ///< a file is damaged or sealed under another key
        malformed,    ///< a file does not hold what belongs there
        crypto,       ///< sealing failed
    };

    Reason reason = Reason::read;
    int systemError = 0; ///< errno, where the system gave one

    /// The file does not hold what was written, and will not the next time either. Any other error may be temporary.
    [[nodiscard]] bool isDamage() const;

    bool operator==(const VaultError&) const = default;
};

/// The files of a vault in their folder, which is kept open. One thread at a time.
class VaultFolder {
public:
    template <typename T>
    using Result = tl::expected<T, VaultError>;

    /// Opens the folder with mode 0700 and makes it, and the folders above it, if they are missing.
    [[nodiscard]] static Result<VaultFolder> open(const std::filesystem::path& path);

    /// The whole file, or none when it does not exist.
    [[nodiscard]] Result<std::optional<std::vector<std::byte>>> read(const std::string& name,
                                                                     std::size_t maximumBytes) const;

    /// Gives the file, of mode 0600, new contents, the parts one after the other: they are written beside it, flushed,
    /// and take its place at once. The name used meanwhile (`vaultNames::temporary`) is gone after a failure.
    [[nodiscard]] Result<void> replace(const std::string& name,
                                       std::initializer_list<std::span<const std::byte>> parts);

    /// Renames a file, replacing the target if it exists.
    [[nodiscard]] Result<void> rename(const std::string& from, const std::string& to);

    /// Removes the file if it exists.
    [[nodiscard]] Result<void> remove(const std::string& name);

    /// Only a name that the system does not know is absent; a failed lookup is an error.
    [[nodiscard]] Result<bool> contains(const std::string& name) const;

    /// The names of everything in the folder.
    [[nodiscard]] Result<std::vector<std::string>> names() const;

    /// Makes renames and removals survive a power loss.
    [[nodiscard]] Result<void> flush();

    /// Whether the path still names this folder: false once it was removed or replaced.
    [[nodiscard]] bool isAt(const std::filesystem::path& path) const;

    /// The system no longer knows the open folder, for example after the restart of a file server: opening it again
    /// helps.
    [[nodiscard]] bool isStale() const;

private:
    explicit VaultFolder(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

    FileDescriptor descriptor_;
};

/// Makes renames, creations and removals in a folder survive a power loss.
[[nodiscard]] VaultFolder::Result<void> flushFolder(const std::filesystem::path& folder);

/// The path without a slash at its end.
[[nodiscard]] std::filesystem::path cleanFolderPath(const std::filesystem::path& path);

} // namespace quillane::core

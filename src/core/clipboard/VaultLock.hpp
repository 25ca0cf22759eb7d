// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/VaultFolder.hpp"
#include "core/support/FileDescriptor.hpp"

#include <filesystem>

namespace quillane::core {

/// The right to write a vault, which one program has at a time: flock(2) on the file "lock" in its folder. It ends with
/// the program, however it ends. Blocks on the disk.
class VaultLock {
public:
    /// Makes the folder and the file if they are missing. `VaultError::Reason::inUse` while another lock holds the
    /// vault. If the disk accepts no file or has no locks, nothing is held and nobody is kept out.
    [[nodiscard]] static VaultFolder::Result<VaultLock> acquire(const std::filesystem::path& folder);

    /// Whether it holds the lock of the current path: false once the folder or the file was removed or replaced.
    [[nodiscard]] bool holds(const std::filesystem::path& folder) const;

private:
    VaultLock() = default;

    explicit VaultLock(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

    FileDescriptor descriptor_; ///< none: nothing is held
};

} // namespace quillane::core

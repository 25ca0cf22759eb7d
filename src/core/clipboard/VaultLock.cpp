// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultLock.hpp"

#include "core/clipboard/VaultNames.hpp"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane::core {

namespace {

constexpr int maximumAttempts = 10; ///< while somebody removes the file between opening and locking it

std::filesystem::path fileIn(const std::filesystem::path& folder) {
    return cleanFolderPath(folder) / vaultNames::lock;
}

} // namespace

VaultFolder::Result<VaultLock> VaultLock::acquire(const std::filesystem::path& folder) {
    static_cast<void>(VaultFolder::open(folder)); // makes it; opening the vault says what is wrong with it
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        // Open for writing too, because network file systems only lock such files.
        VaultLock lock(FileDescriptor(::open(fileIn(folder).c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600)));
        if (!lock.descriptor_) {
            return lock;
        }
        if (::flock(lock.descriptor_.get(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) {
                return tl::unexpected(VaultError{VaultError::Reason::inUse, errno});
            }
            return VaultLock();
        }
        if (lock.holds(folder)) {
            return lock;
        }
    }
    return tl::unexpected(VaultError{VaultError::Reason::inUse, 0});
}

bool VaultLock::holds(const std::filesystem::path& folder) const {
    struct stat own {};

    struct stat found {};

    return descriptor_ && ::fstat(descriptor_.get(), &own) == 0 && ::lstat(fileIn(folder).c_str(), &found) == 0 &&
           own.st_dev == found.st_dev && own.st_ino == found.st_ino;
}

} // namespace quillane::core

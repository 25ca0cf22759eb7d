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

constexpr int mostAttempts = 10; ///< while somebody removes the file between opening and locking it

std::filesystem::path fileIn(const std::filesystem::path& folder) {
    return cleanFolderPath(folder) / vaultNames::lock;
}

} // namespace

VaultFolder::Result<VaultLock> VaultLock::acquire(const std::filesystem::path& folder) {
    static_cast<void>(VaultFolder::open(folder)); // makes it; opening the vault says what is wrong with it
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        // Open for writing too, because network file systems only lock such files.
        VaultLock lock(::open(fileIn(folder).c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (lock.descriptor_ < 0) {
            return lock;
        }
        if (::flock(lock.descriptor_, LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) {
                return tl::unexpected(VaultError{VaultError::Reason::inUse, errno});
            }
            return VaultLock(-1);
        }
        if (lock.holds(folder)) {
            return lock;
        }
    }
    return tl::unexpected(VaultError{VaultError::Reason::inUse, 0});
}

VaultLock::VaultLock(VaultLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

VaultLock& VaultLock::operator=(VaultLock&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

VaultLock::~VaultLock() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

bool VaultLock::holds(const std::filesystem::path& folder) const {
    struct stat own {};

    struct stat found {};

    return descriptor_ >= 0 && ::fstat(descriptor_, &own) == 0 && ::lstat(fileIn(folder).c_str(), &found) == 0 &&
           own.st_dev == found.st_dev && own.st_ino == found.st_ino;
}

} // namespace quillane::core

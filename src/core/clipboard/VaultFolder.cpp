// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultFolder.hpp"

#include "core/clipboard/VaultNames.hpp"
#include "core/support/AtomicFile.hpp"
#include "core/support/FileDescriptor.hpp"
#include "core/support/FileIO.hpp"
#include "core/support/Uninterrupted.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane::core {

namespace {

using Reason = VaultError::Reason;

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

tl::unexpected<VaultError> failure(Reason reason) {
    return tl::unexpected(VaultError{reason, errno});
}

/// A file that this creates may be read by its owner only.
int openIn(int folder, const char* name, int flags) {
    return uninterrupted([&] { return openat(folder, name, flags, fileMode); });
}

/// The file is a link, a socket or a device: opening it will not work the next time either.
bool isSpecialFile(int openError) {
    return openError == ELOOP || openError == ENXIO || openError == EOPNOTSUPP;
}

} // namespace

bool VaultError::isDamage() const {
    return reason == Reason::tooLarge || reason == Reason::notAuthentic || reason == Reason::malformed ||
           (reason == Reason::read && systemError == 0);
}

VaultFolder::Result<VaultFolder> VaultFolder::open(const std::filesystem::path& path) {
    const auto clean = cleanFolderPath(path);
    if (const auto made = createPrivateFolder(clean); !made) {
        return tl::unexpected(VaultError{Reason::folder, made.error().number});
    }
    VaultFolder folder(FileDescriptor(::open(clean.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));

    struct stat status {};

    if (!folder.descriptor_ || fstat(folder.descriptor_.get(), &status) != 0) {
        return failure(Reason::folder);
    }
    if ((status.st_mode & 07777U) != folderMode && fchmod(folder.descriptor_.get(), folderMode) != 0) {
        return failure(Reason::folder);
    }
    return folder;
}

VaultFolder::Result<std::optional<std::vector<std::byte>>> VaultFolder::read(const std::string& name,
                                                                             std::size_t maximumBytes) const {
    const FileDescriptor file(openIn(descriptor_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        if (errno == ENOENT) {
            return std::optional<std::vector<std::byte>>();
        }
        return isSpecialFile(errno) ? tl::unexpected(VaultError{Reason::read, 0}) : failure(Reason::read);
    }

    struct stat status {};

    if (fstat(file.get(), &status) != 0) {
        return failure(Reason::read);
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(VaultError{Reason::read, 0});
    }
    if (static_cast<std::uintmax_t>(status.st_size) > maximumBytes) {
        return tl::unexpected(VaultError{Reason::tooLarge, 0});
    }
    std::vector<std::byte> contents(static_cast<std::size_t>(status.st_size));
    const auto count = readAll(file.get(), contents);
    if (!count) {
        return failure(Reason::read);
    }
    contents.resize(*count);
    return contents;
}

VaultFolder::Result<void> VaultFolder::replace(const std::string& name,
                                               std::initializer_list<std::span<const std::byte>> parts) {
    const auto temporary = vaultNames::temporary();
    {
        const FileDescriptor file(
            openIn(descriptor_.get(), temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC));
        if (!file) {
            return failure(Reason::write);
        }
        const auto isWritten = [&](std::span<const std::byte> part) { return writeAll(file.get(), part); };
        if (!std::ranges::all_of(parts, isWritten) ||
            uninterrupted([&] { return fchmod(file.get(), fileMode); }) != 0 || !flushToDisk(file.get())) {
            const auto failed = failure(Reason::write);
            unlinkat(descriptor_.get(), temporary.c_str(), 0);
            return failed;
        }
    }
    auto renamed = rename(temporary, name);
    if (!renamed) {
        unlinkat(descriptor_.get(), temporary.c_str(), 0);
    }
    return renamed;
}

VaultFolder::Result<void> VaultFolder::rename(const std::string& from, const std::string& to) {
    if (uninterrupted([&] { return renameat(descriptor_.get(), from.c_str(), descriptor_.get(), to.c_str()); }) != 0) {
        return failure(Reason::write);
    }
    return {};
}

VaultFolder::Result<void> VaultFolder::remove(const std::string& name) {
    if (uninterrupted([&] { return unlinkat(descriptor_.get(), name.c_str(), 0); }) != 0 && errno != ENOENT) {
        return failure(Reason::write);
    }
    return {};
}

VaultFolder::Result<bool> VaultFolder::contains(const std::string& name) const {
    if (faccessat(descriptor_.get(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        return true;
    }
    if (errno == ENOENT) {
        return false;
    }
    return failure(Reason::read);
}

VaultFolder::Result<std::vector<std::string>> VaultFolder::names() const {
    // A separate descriptor, because listing moves a folder's read position.
    const int descriptor = openIn(descriptor_.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return failure(Reason::folder);
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(descriptor), &closedir);
    if (!folder) {
        const auto failed = failure(Reason::folder);
        close(descriptor);
        return failed;
    }
    std::vector<std::string> found;
    errno = 0;
    for (const dirent* entry = readdir(folder.get()); entry; entry = readdir(folder.get())) {
        if (const std::string name = entry->d_name; name != "." && name != "..") {
            found.push_back(name);
        }
    }
    if (errno != 0) {
        return failure(Reason::folder);
    }
    return found;
}

bool VaultFolder::isAt(const std::filesystem::path& path) const {
    struct stat own {};

    struct stat found {};

    if (::stat(cleanFolderPath(path).c_str(), &found) != 0) {
        return errno != ENOENT && errno != ENOTDIR; // else nobody can say
    }
    return fstat(descriptor_.get(), &own) == 0 && own.st_dev == found.st_dev && own.st_ino == found.st_ino;
}

bool VaultFolder::isStale() const {
    struct stat status {};

    return fstat(descriptor_.get(), &status) != 0;
}

VaultFolder::Result<void> VaultFolder::flush() {
    if (!flushToDisk(descriptor_.get())) {
        return failure(Reason::write);
    }
    return {};
}

VaultFolder::Result<void> flushFolder(const std::filesystem::path& folder) {
    if (!flushFolderToDisk(folder)) {
        return failure(Reason::write);
    }
    return {};
}

std::filesystem::path cleanFolderPath(const std::filesystem::path& path) {
    auto clean = path.lexically_normal();
    return clean.has_filename() ? clean : clean.parent_path();
}

} // namespace quillane::core

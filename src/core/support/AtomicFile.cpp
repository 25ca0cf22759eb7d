// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/AtomicFile.hpp"

#include "core/support/FileDescriptor.hpp"
#include "core/support/FileIO.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane::core {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view temporarySuffix = ".tmp";

tl::unexpected<FileError> systemError() {
    return tl::unexpected(FileError{errno});
}

/// The prefix of the names of the file's temporaries.
std::string temporaryPrefix(const fs::path& file) {
    return "." + file.filename().string() + ".";
}

/// The file's real path when its name is a symbolic link, whether it exists or not.
fs::path target(fs::path file) {
    std::error_code error;
    for (int links = 0; links < 40; ++links) { // as many as the system follows (path_resolution(7))
        const auto next = fs::read_symlink(file, error);
        if (error) {
            break;
        }
        file = file.parent_path() / next; // an absolute link replaces the folder
    }
    return file;
}

/// Writes the content to a descriptor and to the disk behind it.
tl::expected<void, FileError> fill(const FileDescriptor& fd, std::span<const std::byte> content, mode_t mode) {
    if (::fchmod(fd.get(), mode) != 0 || !writeAll(fd.get(), content) || !flushToDisk(fd.get())) {
        return systemError();
    }
    return {};
}

} // namespace

std::string FileError::message() const {
    return std::generic_category().message(number);
}

tl::expected<std::vector<std::byte>, FileError> readFile(const fs::path& file, std::size_t maximumBytes) {
    const FileDescriptor fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));

    struct stat status {};

    if (!fd || ::fstat(fd.get(), &status) != 0) {
        return systemError();
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::unexpected(FileError{EINVAL});
    }
    std::vector<std::byte> content;
    for (auto expected = static_cast<std::size_t>(status.st_size) + 1;;) { // one more, to reach the end in one pass
        const auto size = content.size();
        content.resize(std::min(std::max(expected, size + 4096), maximumBytes + 1));
        const auto room = std::span(content).subspan(size);
        const auto count = readAll(fd.get(), room);
        if (!count) {
            return systemError();
        }
        const bool atEnd = *count < room.size();
        content.resize(size + *count);
        if (content.size() > maximumBytes) {
            return tl::unexpected(FileError{EFBIG});
        }
        if (atEnd) {
            return content;
        }
    }
}

tl::expected<void, FileError> writeFileAtomically(const fs::path& file, std::span<const std::byte> content,
                                                  mode_t mode) {
    const auto destination = target(file);
    auto temporary =
        (destination.parent_path() / (temporaryPrefix(destination) + "XXXXXX")).string().append(temporarySuffix);
    const FileDescriptor fd(::mkostemps(temporary.data(), static_cast<int>(temporarySuffix.size()), O_CLOEXEC));
    if (!fd) {
        return systemError();
    }
    auto written = fill(fd, content, mode);
    if (written && ::rename(temporary.c_str(), destination.c_str()) != 0) {
        written = systemError();
    }
    if (!written) {
        ::unlink(temporary.c_str());
        return written;
    }
    // Some file systems cannot; the content is safe there all the same.
    static_cast<void>(flushFolderToDisk(destination.has_parent_path() ? destination.parent_path() : fs::path(".")));
    return {};
}

void removeAbandonedTemporaries(const fs::path& file) {
    const auto destination = target(file);
    const auto prefix = temporaryPrefix(destination);
    const auto length = prefix.size() + 6 + temporarySuffix.size();
    std::error_code error;
    for (fs::directory_iterator entry(destination.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        const auto name = entry->path().filename().string();
        if (name.size() == length && name.starts_with(prefix) && name.ends_with(temporarySuffix)) {
            std::error_code ignored; // one that cannot be deleted does no harm
            fs::remove(entry->path(), ignored);
        }
    }
}

tl::expected<void, FileError> createPrivateFolder(const fs::path& folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error)) {
        return {};
    }
    if (folder.has_relative_path()) {
        if (auto above = createPrivateFolder(folder.parent_path()); !above) {
            return above;
        }
    }
    if (::mkdir(folder.c_str(), S_IRWXU) == 0 && ::chmod(folder.c_str(), S_IRWXU) == 0) { // the mask may take any bit
        return {};
    }
    const int number = errno;
    if (number == EEXIST && fs::is_directory(folder, error)) { // made by another program meanwhile
        return {};
    }
    return tl::unexpected(FileError{number});
}

} // namespace quillane::core

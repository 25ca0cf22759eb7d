// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileDescriptor.hpp"
#include "platform/common/curl/UploadSource.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace quillane {

namespace {

/// What distinguishes two states of a file.
struct FileState {
    dev_t device{};
    ino_t inode{};
    off_t size{};
    timespec modified{};

    explicit FileState(const struct stat& status)
        : device(status.st_dev),
          inode(status.st_ino),
          size(status.st_size),
#ifdef __APPLE__
          modified(status.st_mtimespec)
#else
          modified(status.st_mtim)
#endif
    {
    }

    bool operator==(const FileState& other) const {
        return device == other.device && inode == other.inode && size == other.size &&
               modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
    }
};

class UploadFile final : public UploadSource {
public:
    UploadFile(core::FileDescriptor file, std::filesystem::path path, const FileState& state)
        : file_(std::move(file)), path_(std::move(path)), state_(state) {}

    [[nodiscard]] std::int64_t size() const override { return state_.size; }

    tl::expected<std::size_t, core::UrlError> read(std::span<std::byte> buffer) override {
        const auto wanted = std::min(buffer.size(), static_cast<std::size_t>(state_.size - offset_));
        if (wanted == 0) {
            return 0;
        }
        ssize_t count = 0;
        do {
            count = ::pread(file_.get(), buffer.data(), wanted, offset_);
        } while (count < 0 && errno == EINTR);
        if (count < 0) {
            return tl::unexpected(core::UrlError::cannotReadFile);
        }
        offset_ += count;
        const bool isCut = count == 0;
        const bool isLast = offset_ == state_.size;
        if (isCut || (isLast && !isUnchanged())) {
            return tl::unexpected(core::UrlError::fileChanged);
        }
        return static_cast<std::size_t>(count);
    }

    void rewind() override { offset_ = 0; }

    [[nodiscard]] bool isUnchanged() const override {
        struct stat opened {};

        struct stat named {};

        return ::fstat(file_.get(), &opened) == 0 && FileState(opened) == state_ &&
               ::stat(path_.c_str(), &named) == 0 && FileState(named) == state_;
    }

private:
    core::FileDescriptor file_;
    std::filesystem::path path_;
    FileState state_;
    off_t offset_ = 0;
};

} // namespace

OpenedSource openUploadFile(const std::filesystem::path& path) {
    core::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));

    struct stat status {};

    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return tl::unexpected(core::UrlError::cannotReadFile);
    }
#ifdef POSIX_FADV_SEQUENTIAL
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL); // advice only
#endif
    return std::make_unique<UploadFile>(std::move(file), path, FileState(status));
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <unistd.h>

namespace quillane::core {

/// Owns a file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int fd) : fd_(fd) {}

    FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }

    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return fd_; }

    explicit operator bool() const { return fd_ >= 0; }

private:
    void close() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }

    int fd_ = -1;
};

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileIO.hpp"

#include "core/support/FileDescriptor.hpp"
#include "core/support/Uninterrupted.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace quillane::core {

bool writeAll(int descriptor, std::span<const std::byte> contents) {
    while (!contents.empty()) {
        const auto written = uninterrupted([&] { return ::write(descriptor, contents.data(), contents.size()); });
        if (written < 0) {
            return false;
        }
        contents = contents.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<std::size_t> readAll(int descriptor, std::span<std::byte> buffer) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const auto count =
            uninterrupted([&] { return ::read(descriptor, buffer.data() + filled, buffer.size() - filled); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

bool flushToDisk(int descriptor) {
#ifdef F_FULLFSYNC // where this exists, fsync alone stops at the drive's cache (fcntl(2) of macOS)
    if (uninterrupted([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) == 0) {
        return true;
    }
#endif
    return uninterrupted([&] { return ::fsync(descriptor); }) == 0; // all that network and older file systems offer
}

bool flushFolderToDisk(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(
        uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return descriptor && flushToDisk(descriptor.get());
}

} // namespace quillane::core

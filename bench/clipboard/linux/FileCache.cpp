// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "clipboard/FileCache.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace quillane::bench {

void dropFileCache(const std::filesystem::path& folder) {
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        const int descriptor = open(file.path().c_str(), O_RDONLY | O_CLOEXEC);
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
        close(descriptor);
    }
}

} // namespace quillane::bench

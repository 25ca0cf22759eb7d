// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "clipboard/FileCache.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quillane::bench {

void dropFileCache(const std::filesystem::path& folder) {
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        const auto size = static_cast<std::size_t>(file.file_size());
        const int descriptor = open(file.path().c_str(), O_RDONLY | O_CLOEXEC);
        void* pages = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
        if (pages != MAP_FAILED) {
            msync(pages, size, MS_INVALIDATE); // drops the cached pages (msync(2))
            munmap(pages, size);
        }
        close(descriptor);
    }
}

} // namespace quillane::bench

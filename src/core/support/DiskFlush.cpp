// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/DiskFlush.hpp"

#include "core/support/Uninterrupted.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace quillane::core {

bool flushToDisk(int descriptor) {
#ifdef F_FULLFSYNC // where this exists, fsync alone stops at the drive's cache (fcntl(2) of macOS)
    if (uninterrupted([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) == 0) {
        return true;
    }
#endif
    return uninterrupted([&] { return ::fsync(descriptor); }) == 0; // all that network and older file systems offer
}

} // namespace quillane::core

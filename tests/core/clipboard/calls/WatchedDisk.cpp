// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/calls/WatchedDisk.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using quillane::core::testing::Disk;
using quillane::core::testing::DiskFault;

Disk* disk = nullptr; // none: the disk is not watched

std::string nameOf(int descriptor) {
    std::string path(4'096, '\0');
    const auto length = ::readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), path.data(), path.size());
    path.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return path.substr(path.rfind('/') + 1);
}

/// The fault of this call, or 0 when it is to work. Only writes can be short; another call then works.
int faultOf(std::string_view call) {
    if (disk == nullptr) {
        return 0;
    }
    const int number = disk->count++;
    if (!disk->fault) {
        return 0;
    }
    const auto& fault = *disk->fault;
    const bool isDue = fault.duration == DiskFault::Duration::once ? number == fault.at : number >= fault.at;
    if (!isDue || (fault.error == DiskFault::shortWrite && call != "write")) {
        return 0;
    }
    if (disk->failed.empty()) {
        disk->failed = call;
    }
    errno = std::max(fault.error, 0);
    return fault.error;
}

} // namespace

extern "C" int fsync(int descriptor) {
    if (disk != nullptr) {
        const auto name = nameOf(descriptor);
        disk->calls.push_back(name.ends_with(".clip") ? "flush a file" : "flush " + name);
        std::this_thread::sleep_for(disk->flushTime);
    }
    return faultOf("fsync") != 0 ? -1 : static_cast<int>(::syscall(SYS_fsync, descriptor));
}

extern "C" int renameat(int oldFolder, const char* oldName, int newFolder, const char* newName) noexcept {
    if (disk != nullptr) {
        disk->calls.push_back(std::string("rename ") + newName);
    }
    return faultOf("renameat") != 0
               ? -1
               : static_cast<int>(::syscall(SYS_renameat2, oldFolder, oldName, newFolder, newName, 0));
}

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
    if (disk != nullptr) {
        disk->calls.push_back(std::string("remove ") + name);
    }
    return faultOf("unlinkat") != 0 ? -1 : static_cast<int>(::syscall(SYS_unlinkat, folder, name, flags));
}

extern "C" int openat(int folder, const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0; // present only with this flag
    va_end(rest);
    return faultOf("openat") != 0 ? -1 : static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}

extern "C" ssize_t write(int descriptor, const void* bytes, size_t size) {
    const int fault = faultOf("write");
    if (fault > 0) {
        return -1;
    }
    return static_cast<ssize_t>(
        ::syscall(SYS_write, descriptor, bytes, fault == DiskFault::shortWrite ? std::min<size_t>(size, 1) : size));
}

extern "C" int fchmod(int descriptor, mode_t mode) noexcept {
    return faultOf("fchmod") != 0 ? -1 : static_cast<int>(::syscall(SYS_fchmod, descriptor, mode));
}

extern "C" int statvfs(const char* path, struct statvfs* result) noexcept {
    if (faultOf("statvfs") != 0) {
        return -1;
    }

    struct statfs status {};

    if (::statfs(path, &status) != 0) {
        return -1;
    }
    *result = {};
    result->f_frsize = disk != nullptr && disk->room ? 1 : static_cast<unsigned long>(status.f_frsize);
    result->f_blocks = status.f_blocks;
    result->f_bfree = status.f_bfree;
    result->f_bavail = disk != nullptr && disk->room ? *disk->room : status.f_bavail;
    return 0;
}

namespace quillane::core::testing {

DiskWatch::DiskWatch(Disk& watched) {
    disk = &watched;
}

DiskWatch::~DiskWatch() {
    disk = nullptr;
}

} // namespace quillane::core::testing

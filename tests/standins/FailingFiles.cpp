// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// A failing disk, for a program that preloads this library: while the home folder has a file "failing", the files of a
// vault cannot be read. A file "stale" makes one read fail, like a file server that has come back.
namespace {

std::string inHome(const char* name) {
    const auto* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/" + name;
}

/// The error of reading a file of that name, or 0.
int errorOf(std::string_view name, int flags) {
    if ((flags & O_ACCMODE) != O_RDONLY || (name != "index" && !name.ends_with(".clip"))) {
        return 0;
    }
    if (::access(inHome("failing").c_str(), F_OK) == 0) {
        return EIO;
    }
    return ::unlink(inHome("stale").c_str()) == 0 ? ESTALE : 0;
}

int openFile(int folder, const char* name, int flags, mode_t mode) {
    if (const int error = errorOf(name, flags); error != 0) {
        errno = error;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}

/// The mode is present only with flags that create a file.
mode_t modeOf(int flags, va_list rest) {
    return (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
}

} // namespace

extern "C" int openat(int folder, const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = modeOf(flags, rest);
    va_end(rest);
    return openFile(folder, name, flags, mode);
}

extern "C" int openat64(int folder, const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = modeOf(flags, rest);
    va_end(rest);
    return openFile(folder, name, flags, mode);
}

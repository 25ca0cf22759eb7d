// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// An unreachable file server, for a program that preloads this library: a query for a file below /away gets no answer.
// A file "asked" in the home folder shows that there was one.
extern "C" int stat(const char* path, struct stat* result) noexcept {
    if (std::string(path).starts_with("/away/")) {
        const auto* home = std::getenv("HOME");
        ::close(::open((std::string(home != nullptr ? home : "") + "/asked").c_str(), O_CREAT | O_CLOEXEC, 0600));
        for (;;) {
            ::pause();
        }
    }
    return static_cast<int>(::syscall(SYS_newfstatat, AT_FDCWD, path, result, 0));
}

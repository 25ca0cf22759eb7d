// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// A file server that is away, for a program that this library is loaded into first: whoever asks after a file below
// /away gets no answer. That somebody has asked is seen by a file "asked" in the home folder.
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

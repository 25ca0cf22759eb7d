// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/control/ControlTrust.hpp"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane {

bool isPrivateFolder(const std::filesystem::path& folder) {
    struct stat status {};

    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool isPeerThisUser(int socket) {
#ifdef SO_PEERCRED
    ucred peer{};
    socklen_t length = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::geteuid();
#else
    uid_t user = 0;
    gid_t group = 0;
    return ::getpeereid(socket, &user, &group) == 0 && user == ::geteuid();
#endif
}

} // namespace quillane

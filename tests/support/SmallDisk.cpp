// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/SmallDisk.hpp"

#include <fstream>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillane::live {
namespace {

bool writeTo(const char* file, const std::string& line) {
    std::ofstream stream(file);
    stream << line << std::flush;
    return stream.good();
}

bool enterNamespaces() {
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) == 0) {
        return true;
    }
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    // The user stays the same, and a group may be mapped only where no others can be taken.
    return writeTo("/proc/self/setgroups", "deny") && writeTo("/proc/self/uid_map", user + ' ' + user + " 1") &&
           writeTo("/proc/self/gid_map", group + ' ' + group + " 1");
}

} // namespace

bool separateMounts() {
    return enterNamespaces() && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountSmallDisk(const std::filesystem::path& folder, const std::string& size) {
    return mount("quillane", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) == 0;
}

} // namespace quillane::live

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/MacPermission.hpp"

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillane::core {

/// Where the running program is installed, as the user and the system see it.
struct ApplicationLocation {
    std::filesystem::path application; ///< the bundle where there is one, else the executable
    bool installed = false;            ///< permissions and the login item belong to this copy

    /// A bundle is installed when it is in an Applications folder; a bare executable always is, because permissions
    /// then do not belong to a copy.
    [[nodiscard]] static ApplicationLocation of(const std::filesystem::path& executable,
                                                const std::filesystem::path& home);
};

/// A program with its arguments.
struct ProcessCommand {
    std::string executable;
    std::vector<std::string> arguments;

    bool operator==(const ProcessCommand&) const = default;
};

/// Waits until the process has ended, at most five seconds, and then starts the application: a bundle through the
/// system's open command, an executable directly.
[[nodiscard]] ProcessCommand relaunchCommand(pid_t process, const std::filesystem::path& application);

/// The address by which macOS opens the page of System Settings where the permission is granted.
[[nodiscard]] std::string settingsAddress(MacPermission permission);

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/MacPermission.hpp"

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillane::core {

/// Where the running program lies, as people and the system see it.
struct ApplicationLocation {
    std::filesystem::path application; ///< the bundle where there is one, else the executable
    bool installed = false;            ///< grants and the login item belong to this copy

    /// A bundle is installed when it lies in an Applications folder; a bare executable always is, because grants are
    /// not given to a copy then.
    [[nodiscard]] static ApplicationLocation of(const std::filesystem::path& executable,
                                                const std::filesystem::path& home);
};

/// A program with its arguments.
struct ProcessCommand {
    std::string executable;
    std::vector<std::string> arguments;

    bool operator==(const ProcessCommand&) const = default;
};

/// Waits until the process has gone, five seconds at most, and then starts the application: a bundle by the system's
/// command for opening, an executable by itself.
[[nodiscard]] ProcessCommand relaunchCommand(pid_t process, const std::filesystem::path& application);

/// The page of System Settings where the permission is granted, as the address that macOS opens it by.
[[nodiscard]] std::string settingsAddress(MacPermission permission);

} // namespace quillane::core

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace quillane::live {

/// Gives the calling process and its children their own view of the file systems: directly as root, and for an ordinary
/// user, where the system allows it, as the owner of a user namespace (user_namespaces(7)). The process must have one
/// thread only. False when it is not permitted.
[[nodiscard]] bool separateMounts();

/// Mounts a file system of memory of this size, for example "256k", in place of a folder, which must exist. Only after
/// `separateMounts`. False when it is not permitted.
[[nodiscard]] bool mountSmallDisk(const std::filesystem::path& folder, const std::string& size);

} // namespace quillane::live

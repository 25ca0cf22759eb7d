// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"

#include <filesystem>
#include <span>
#include <stop_token>
#include <vector>

namespace quillane {

/// The folders that installed applications describe themselves in, the user's first (XDG Base Directory
/// Specification: XDG_DATA_HOME, XDG_DATA_DIRS).
[[nodiscard]] std::vector<std::filesystem::path> applicationFolders();

/// The applications with windows that menus show, by the entries of those folders (freedesktop.org, "Desktop Entry
/// Specification"); an entry hides those of the same name in later folders. An entry that does not tell the class of
/// its windows is taken for a program that names it after itself, as Qt and GTK do. Reads files: not on the main
/// thread.
[[nodiscard]] std::vector<KnownApplication> installedApplications(std::span<const std::filesystem::path> folders,
                                                                  const std::stop_token& stop = {});

} // namespace quillane

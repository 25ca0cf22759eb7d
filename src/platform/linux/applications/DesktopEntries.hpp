// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace quillane {

/// What an entry says about an application (freedesktop.org, "Desktop Entry Specification").
struct DesktopEntry {
    std::string id;               ///< its Desktop File ID, without the suffix
    std::string name;             ///< in the language of the session; may be empty
    std::string windowClass = {}; ///< StartupWMClass; may be empty
    std::string program = {};     ///< the program that it starts, without a folder; empty for one that only starts
                                  ///< others
    bool isShown = true;          ///< in menus
    bool isTerminal = false;      ///< of the category TerminalEmulator

    bool operator==(const DesktopEntry&) const = default;
};

/// The folders with the entries of installed applications, the user's first (XDG Base Directory Specification:
/// XDG_DATA_HOME, XDG_DATA_DIRS).
[[nodiscard]] std::vector<std::filesystem::path> applicationFolders();

/// The entries of applications with windows; an entry hides those with the same identifier in later folders. Reads
/// files: not on the main thread.
[[nodiscard]] std::vector<DesktopEntry> desktopEntries(std::span<const std::filesystem::path> folders,
                                                       const std::stop_token& stop = {});

/// The program of a command line ("The Exec key"), where "%%" stands for one percent sign. Empty when there is none.
[[nodiscard]] std::string programOfCommand(const std::string& exec);

} // namespace quillane

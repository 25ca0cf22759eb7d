// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace quillane {

/// An entry of GNOME's file manager, which accepts none from packages: an executable file among the user's scripts,
/// whose name is the entry's title. It runs `quillane share`. Calls read the folder, which is on the user's own disk.
class NautilusScript {
public:
    /// `program` is what the script runs, `folder` where scripts are.
    NautilusScript(std::filesystem::path program, std::filesystem::path folder);

    /// Whether the folder has a script that `write` has made, whatever its title.
    [[nodiscard]] bool exists() const;

    /// Makes the script, in place of one under another title. False when the disk refuses, or when the title is the
    /// name of one of the user's files.
    [[nodiscard]] bool write(const std::string& title) const;

    /// Removes what `write` has made. False when the disk refuses.
    [[nodiscard]] bool remove() const;

private:
    std::filesystem::path program_;
    std::filesystem::path folder_;
};

/// `$XDG_DATA_HOME/nautilus/scripts`.
[[nodiscard]] std::filesystem::path nautilusScriptsFolder();

/// Whether the user has that file manager.
[[nodiscard]] bool isNautilusInstalled();

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LoginItemService.hpp"

#include <filesystem>

namespace quillane {

/// A desktop entry in the user's autostart folder (freedesktop.org, "Desktop Application Autostart Specification").
class AutostartLoginItem final : public LoginItemService {
public:
    /// `program` is what the entry starts, `folder` where entries are: $XDG_CONFIG_HOME/autostart.
    AutostartLoginItem(std::filesystem::path program, const std::filesystem::path& folder);

    /// The entry decides: one that is hidden, or switched off by a desktop's own settings, or whose program is gone is
    /// not registered.
    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] bool enable() override;
    [[nodiscard]] bool disable() override;

    [[nodiscard]] bool hasSettings() const override { return false; }

    void openSettings() override {}

private:
    std::filesystem::path program_;
    std::filesystem::path file_;
};

/// Where the session looks for entries.
[[nodiscard]] std::filesystem::path autostartFolder();

} // namespace quillane

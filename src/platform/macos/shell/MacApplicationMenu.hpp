// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationMenu.hpp"

#include <memory>

namespace quillane {

/// The menu bar of this application: NSApplication.mainMenu, with the submenu of windows as NSApplication.windowsMenu.
class MacApplicationMenu final : public ApplicationMenu {
public:
    MacApplicationMenu();

    /// Takes the menu out of the menu bar.
    ~MacApplicationMenu() override;

    void install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) override;

private:
    struct Menu;
    std::unique_ptr<Menu> menu_;
};

} // namespace quillane

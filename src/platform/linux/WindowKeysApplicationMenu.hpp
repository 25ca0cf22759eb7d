// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationMenu.hpp"

#include <memory>

namespace quillane {

/// The application menu where windows have no menu bar: each row's key works in every window of the program, and the
/// standard editing keys are left to the widget that has the focus.
class WindowKeysApplicationMenu final : public ApplicationMenu {
public:
    WindowKeysApplicationMenu();
    ~WindowKeysApplicationMenu() override;

    void install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) override;

private:
    class Keys;
    std::unique_ptr<Keys> keys_;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <optional>

namespace quillane {

/// An editing or window command that the system itself carries out in the window in front.
enum class StandardCommand { undo, redo, cut, copy, paste, selectAll, minimize, close, hide };

struct ApplicationMenuRow {
    MenuRow row;                             ///< its `action` is used when no standard command is given
    std::optional<StandardCommand> standard; ///< has its usual key
};

struct ApplicationSubmenu {
    enum class Role { application, edit, windows };

    Role role{};
    std::string title;
    std::vector<ApplicationMenuRow> rows;
};

/// The main menu that is used while a window of this program is in front: the menu bar on macOS; on Linux, where
/// windows have none, the keys of its rows work in every window. Main thread.
class ApplicationMenu {
public:
    virtual ~ApplicationMenu() = default;

    /// The direction is that of the menu bar, where there is one; windows follow InterfaceLanguage.
    virtual void install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) = 0;
};

} // namespace quillane

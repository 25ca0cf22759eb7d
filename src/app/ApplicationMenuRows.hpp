// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"
#include "platform/ApplicationMenu.hpp"

#include <functional>
#include <vector>

namespace quillane {

/// What the application menu's own rows do. A row without an action is shown disabled.
struct ApplicationMenuActions {
    std::function<void()> showSettings;
    std::function<void()> shareFile;
    std::function<void()> quit;
};

/// The main menu used while a window of the program is in front: application, Edit and Window.
[[nodiscard]] std::vector<ApplicationSubmenu> applicationMenuRows(core::AppLanguage language,
                                                                  const ApplicationMenuActions& actions);

} // namespace quillane

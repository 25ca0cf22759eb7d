// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"
#include "platform/Workspace.hpp"
#include "platform/linux/applications/InstalledApplications.hpp"
#include "platform/linux/applications/TerminalShortcuts.hpp"

#include <memory>

namespace quillane {

/// Looks at the keyboard focus in the application in front, and at the application's own category. One that does not
/// answer in time is judged by its category.
class TerminalFocus {
public:
    TerminalFocus(Accessibility& accessibility, const Workspace& workspace,
                  std::shared_ptr<const InstalledApplications> installed)
        : accessibility_(accessibility), workspace_(workspace), installed_(std::move(installed)) {}

    [[nodiscard]] ShortcutStyle styleIn(pid_t pid) const;

private:
    Accessibility& accessibility_;
    const Workspace& workspace_;
    std::shared_ptr<const InstalledApplications> installed_; // shared with the workspace
};

} // namespace quillane

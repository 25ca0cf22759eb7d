// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/support/Lifetime.hpp"
#include "direction/AX.hpp"
#include "direction/DirectionServices.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in any application whose menu bar has AppKit's commands for it, by
/// pressing them there: no menu opens. For desktops where the items of closed menus can be pressed, as on macOS.
///
/// Whether an application has the commands is looked up once, when it first comes to the front, a few elements at a
/// time, and remembered while it runs.
///
/// Main thread. `apply` waits for a few calls, and leaves nothing to do later.
class MenuBarDirectionAdapter {
public:
    MenuBarDirectionAdapter(DirectionServices services, DirectionReport report);

    MenuBarDirectionAdapter(const MenuBarDirectionAdapter&) = delete;
    MenuBarDirectionAdapter& operator=(const MenuBarDirectionAdapter&) = delete;

    /// Looks up the application in front, unless that has been done. One that does not answer, for example because it
    /// is starting, may be asked again a few times.
    void lookUpFront();

    /// Whether the application is known to have the commands. Asks nobody.
    [[nodiscard]] bool serves(const RunningApplication& application) const;

    /// Presses the command if the application in front has it and text is edited there; otherwise does nothing.
    void apply(core::WritingDirection direction);

private:
    struct Commands {
        AXElement leftToRight;
        AXElement rightToLeft;
    };

    /// What is known about a process.
    struct Known {
        std::optional<std::string> bundleID;
        std::optional<Commands> commands; ///< none where there are none, and until they have been found
        int attempts = 0;
        bool isUnanswered = false; ///< the last attempt
    };

    /// A walk through the menu bar.
    struct Lookup {
        pid_t pid;
        ax::TreeSearch search;
        std::optional<AXElement> leftToRight;
        std::optional<AXElement> rightToLeft;
        std::vector<AXElement> titled; ///< items that are named as the submenu of the commands
    };

    void beginLookup(pid_t pid);
    void continueLookup(const std::shared_ptr<Lookup>& lookup);
    void endLookup(const Lookup& lookup);
    void noteUnanswered(pid_t pid);
    [[nodiscard]] std::optional<Commands> commandsByTitle(const AXElement& item) const;
    [[nodiscard]] const Known* find(const RunningApplication& application) const;

    DirectionServices services_;
    DirectionReport report_;
    std::map<pid_t, Known> known_;
    core::Lifetime lifetime_;
};

} // namespace quillane

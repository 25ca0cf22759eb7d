// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/UserInput.hpp"
#include "core/support/Lifetime.hpp"
#include "direction/DirectionServices.hpp"
#include "direction/FirefoxDirectionAdapter.hpp"
#include "direction/LibreOfficeDirectionAdapter.hpp"
#include "direction/MenuBarDirectionAdapter.hpp"
#include "direction/NativeDirectionAdapter.hpp"
#include "direction/OutlookAdapter.hpp"
#include "direction/WordDirectionAdapter.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillane {

/// Hands a direction to the adapter of the application in front. The adapters work asynchronously and report their
/// outcome. Main thread.
class DirectionCommands {
public:
    /// `canApply` says whether the feature is on, granted and not suspended.
    DirectionCommands(DirectionServices services, std::function<bool()> canApply, DirectionReport report);

    DirectionCommands(const DirectionCommands&) = delete;
    DirectionCommands& operator=(const DirectionCommands&) = delete;

    /// A direction chord was released. Does nothing, silently, in other applications and while it cannot be applied.
    void apply(core::WritingDirection direction);

    /// Brings the application with this identifier to the front and applies the direction there, unless something else
    /// comes to the front in between.
    void test(core::WritingDirection direction, const std::string& bundleID);

    /// Looks up whether the application in front has direction commands in its menu bar, once, off the caller's path.
    /// Only for desktops where such commands can be pressed while their menus are closed.
    void lookUpFront() { menuBarAdapter_.lookUpFront(); }

    /// Whether an application that is not a supported one is known to have such commands. Asks nobody.
    [[nodiscard]] bool serves(const RunningApplication& application) const {
        return menuBarAdapter_.serves(application);
    }

    /// Drops every pending step. A menu that was requested is closed, also when it opens later.
    void cancelPending();

    /// The user has pressed a key, clicked or scrolled: drops every pending step, and leaves a menu that the input
    /// reaches to the user.
    void interrupt(core::UserInput input);

    /// The application in front, by its identifier, if it has direction commands.
    [[nodiscard]] std::optional<std::string> target() const;

private:
    [[nodiscard]] DirectionAdapter& adapterFor(core::DirectionManner manner);

    DirectionServices services_;
    std::function<bool()> canApply_;
    DirectionReport report_;
    OutlookAdapter adapter_;
    NativeDirectionAdapter browserAdapter_;
    WordDirectionAdapter wordAdapter_;
    LibreOfficeDirectionAdapter libreOfficeAdapter_;
    FirefoxDirectionAdapter firefoxAdapter_;
    MenuBarDirectionAdapter menuBarAdapter_;
    core::Lifetime lifetime_;
};

} // namespace quillane

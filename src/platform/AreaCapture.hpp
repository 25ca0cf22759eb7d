// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/AppLanguage.hpp"

#include <functional>

namespace quillane {

/// Lets the user select an area of the screen, whose picture is then on the clipboard as a PNG. Main thread.
class AreaCapture {
public:
    /// Who runs the selection.
    enum class Means {
        systemShortcut, ///< the system, through a shortcut that the user can turn off in its settings
        ownSelection,   ///< this program
        none,           ///< nobody on this desktop
    };

    virtual ~AreaCapture() = default;

    [[nodiscard]] virtual Means means() const = 0;

    /// Begins a selection, or continues the one in progress. False when it cannot begin. Does not wait for the user,
    /// and does not report a selection or its cancellation. `language` is for the texts that this program shows
    /// meanwhile. `keptOut` is called later if another program keeps the keyboard to itself.
    [[nodiscard]] virtual bool start(core::AppLanguage language, std::function<void()> keptOut) = 0;

    /// Shows the page of the system's settings that has the shortcut. False when there is none.
    virtual bool openShortcutSettings() = 0;
};

} // namespace quillane

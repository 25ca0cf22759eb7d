// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace quillane {

/// Whether the program shows in the Dock (or task bar) and has a menu bar.
enum class ActivationPolicy {
    accessory, ///< menu bar only
    regular,   ///< like any application
};

/// A window that lies over those of other applications while the application in front stays there.
enum class PanelKind {
    card,   ///< to look at and to drag from; never has the keyboard
    search, ///< has the keyboard while it is open, and closes when the user turns to something else
    sign,   ///< only to look at: never has the keyboard, and what the pointer does goes to the window below
};

/// How Qt numbers the keys of a window's key events, and which modifier stands for Command.
enum class KeyNumbering {
    x11,   ///< scan codes of the X server; the Super key, which stands in for Command in hot keys, is Meta
    macOS, ///< virtual key codes of macOS; Command is Control, and Control is Meta
};

/// How the desktop treats this program's windows. Main thread.
class WindowTraits {
public:
    virtual ~WindowTraits() = default;

    [[nodiscard]] virtual KeyNumbering keyNumbering() const = 0;

    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Brings this program in front of all others, for a window that the user has asked for. Does nothing where windows
    /// come to the front one by one.
    virtual void activateApplication() = 0;

    /// Makes a window without a parent, which has not been shown yet, a panel. It floats above other windows, follows
    /// the user (spaces, full-screen applications) and shows no title. Hides the window.
    virtual void makePanel(QWidget& window, PanelKind kind) = 0;
};

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane {

/// Whether the program shows in the Dock (or task bar) and has a menu bar.
enum class ActivationPolicy {
    accessory, ///< menu bar only
    regular,   ///< like any application
};

/// What the desktop makes of this program's windows. Main thread.
class WindowTraits {
public:
    virtual ~WindowTraits() = default;

    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Brings this program in front of all others, for a window that the user has asked for. Where windows come to the
    /// front one by one, nothing is left to do.
    virtual void activateApplication() = 0;
};

} // namespace quillane

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
};

} // namespace quillane

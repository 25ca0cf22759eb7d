// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"
#include "platform/Workspace.hpp"

#include <optional>

namespace quillane {

/// Makes a browser of the Chromium family build its accessibility tree, which is there a moment later. False when it
/// has not answered. Main thread; waits for `core::chromiumFamily::wakingTimeout` at most.
bool wakeBrowser(Accessibility& accessibility, pid_t pid);

/// Wakes each known browser of the family once when it has come to the front. No other application is asked for
/// anything. Main thread.
class BrowserWaker {
public:
    BrowserWaker(Accessibility& accessibility, const Workspace& workspace)
        : accessibility_(accessibility), workspace_(workspace) {}

    /// Wakes a browser in front that has not answered yet.
    void wake();

    /// Another application has come to the front.
    void noteActivation() { woken_.reset(); }

private:
    Accessibility& accessibility_;
    const Workspace& workspace_;
    std::optional<pid_t> woken_; ///< which has answered since it came to the front
};

} // namespace quillane

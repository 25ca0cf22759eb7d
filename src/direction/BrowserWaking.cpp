// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/BrowserWaking.hpp"

#include "core/direction/ChromiumFamily.hpp"

namespace quillane {

bool wakeBrowser(Accessibility& accessibility, pid_t pid) {
    const auto application = accessibility.application(pid);
    accessibility.setMessagingTimeout(application, core::chromiumFamily::wakingTimeout);
    return accessibility.attribute(application, "AXRole").has_value(); // the question is what wakes it
}

void BrowserWaker::wake() {
    const auto front = workspace_.frontmostApplication();
    if (front && front->pid != woken_ && front->bundleID && core::chromiumFamily::contains(*front->bundleID) &&
        wakeBrowser(accessibility_, front->pid)) {
        woken_ = front->pid;
    }
}

} // namespace quillane

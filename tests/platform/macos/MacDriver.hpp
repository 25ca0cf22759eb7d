// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/macos/shell/MacLaunch.hpp"

#include <QApplication>

#include <array>
#include <chrono>
#include <functional>

#import <AppKit/AppKit.h>

namespace quillane::testing {

/// What the drivers on a Mac share: an application that has finished launching, and its run loop. The tests need the
/// window server, so a session of a user who is logged in.
class MacDriver {
public:
    /// Runs the main run loop and handles the events of windows until the condition holds; false when it does not
    /// within five seconds.
    bool waitUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, true);
            QCoreApplication::processEvents(); // of windows, too
        }
        return true;
    }

protected:
    MacDriver() { finishLaunching(); }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QApplication application_{argc_, argv_.data()};
};

} // namespace quillane::testing

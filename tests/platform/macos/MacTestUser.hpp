// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/macos/foundation/CFRef.hpp"
#include "support/Modifier.hpp"

#include <set>
#include <string>

#import <ApplicationServices/ApplicationServices.h>

namespace quillane::testing {

/// A user at the keyboard and the mouse: events that enter the system where those of the hardware do (CGEventPost at
/// the HID tap), so that every tap sees them. Keys still held are released at the end.
class MacTestUser {
public:
    MacTestUser() = default;
    MacTestUser(const MacTestUser&) = delete;
    MacTestUser& operator=(const MacTestUser&) = delete;

    ~MacTestUser() {
        while (!held_.empty()) {
            release(*held_.begin());
        }
    }

    /// What this program lacks for its events to be accepted.
    [[nodiscard]] static std::string lacking() {
        return CGPreflightPostEventAccess() ? "" : "the program that runs the tests has no Accessibility permission";
    }

    void press(core::KeyCode key) { post(key, true, kCGEventNull); }

    void release(core::KeyCode key) { post(key, false, kCGEventNull); }

    void tap(core::KeyCode key) {
        press(key);
        release(key);
    }

    void press(fakes::Modifier modifier) {
        held_.insert(modifier);
        post(fakes::keyOf(modifier).keyCode, true, kCGEventFlagsChanged);
    }

    void release(fakes::Modifier modifier) {
        held_.erase(modifier);
        post(fakes::keyOf(modifier).keyCode, false, kCGEventFlagsChanged);
    }

    /// In the points of the screen, from its top left corner.
    void click(CGPoint place, CGMouseButton button = kCGMouseButtonLeft) {
        const bool left = button == kCGMouseButtonLeft;
        for (const auto type : {left ? kCGEventLeftMouseDown : kCGEventRightMouseDown,
                                left ? kCGEventLeftMouseUp : kCGEventRightMouseUp}) {
            send(CFRef<CGEventRef>::adopt(CGEventCreateMouseEvent(nullptr, type, place, button)));
        }
    }

    void scroll() {
        send(CFRef<CGEventRef>::adopt(CGEventCreateScrollWheelEvent(nullptr, kCGScrollEventUnitLine, 1, 1)));
    }

private:
    [[nodiscard]] CGEventFlags flags() const {
        CGEventFlags flags = 0;
        for (const auto modifier : held_) {
            flags |= fakes::keyOf(modifier).common | fakes::keyOf(modifier).own;
        }
        return flags;
    }

    void post(core::KeyCode key, bool down, CGEventType type) const {
        const auto event = CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, key, down));
        if (event && type != kCGEventNull) {
            CGEventSetType(event.get(), type);
        }
        if (event) {
            CGEventSetFlags(event.get(), flags());
        }
        send(event);
    }

    static void send(const CFRef<CGEventRef>& event) {
        if (event) {
            CGEventPost(kCGHIDEventTap, event.get());
        }
    }

    std::set<fakes::Modifier> held_;
};

} // namespace quillane::testing

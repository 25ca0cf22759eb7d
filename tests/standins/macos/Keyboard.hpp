// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"
#include "standins/macos/Object.hpp"

#include <ApplicationServices/Events.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quillane::standin {

/// An event of Quartz.
class Event final : public Object {
public:
    CGEventType number = 0;
    CGKeyCode key = 0;
    CGEventFlags flags = 0;
    std::u16string text; ///< that it types instead of the layout's
    std::int64_t userData = 0;

    [[nodiscard]] CFTypeID type() const override { return 40; }

    [[nodiscard]] std::string describe() const override { return "an event"; }
};

/// The port of an event tap.
class TapPort final : public Object {
public:
    CGEventMask mask = 0;
    CGEventTapCallBack callback = nullptr;
    void* context = nullptr;
    bool isEnabled = true;
    bool isValid = true;
    CFRunLoopSourceRef source = nullptr; ///< not retained

    [[nodiscard]] CFTypeID type() const override { return 41; }

    [[nodiscard]] std::string describe() const override { return "an event tap"; }
};

/// The keyboard, the pointer, the taps between them and the application in front, and that application.
class Keyboard {
public:
    // What the user does.
    void press(CGKeyCode key, CGEventType type, CGEventFlags flags);
    void release(CGKeyCode key, CGEventType type, CGEventFlags flags);
    void send(CGEventType type); ///< a click or a scroll

    /// The system takes the tap away and says so, with a notice that has no event.
    void disableTaps(CGEventType notice);

    /// A program posts an event to the session, whose taps get it too.
    void post(Event& event);

    /// An event of the type that is null, as no documentation excludes.
    void sendNullEvent(CGEventType type);

    std::map<CGKeyCode, std::u16string> layout; ///< what keys type, with whatever modifiers
    std::u16string typed;                       ///< in the application in front
    std::set<CGKeyCode> down;
    CGEventFlags flags = 0;
    bool secureInput = false; ///< keys reach the application and no tap

    struct Posted {
        pid_t pid;
        CGKeyCode key;
        CGEventFlags flags;
        bool isDown;
    };

    std::vector<Posted> posted;

    // How the system answers.
    bool permits = true;      ///< making a tap
    bool enablesTaps = true;  ///< else a tap stays disabled, as without the permission of today's systems
    bool givesSources = true; ///< for a port
    int eventsLeft = -1;      ///< that can be made; below zero for any number

    std::vector<CFRef<CFMachPortRef>> taps;

    void settle();

private:
    void deliver(Event& event);

    /// False when a tap has taken the event out of the stream.
    bool passThroughTaps(CGEventType type, CGEventRef event);
};

} // namespace quillane::standin

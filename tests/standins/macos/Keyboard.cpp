// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Keyboard.hpp"

#include "standins/macos/Mac.hpp"

#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>

#include <gtest/gtest.h>

namespace quillane::standin {

namespace {

constexpr CGEventType keyDown = 10;
constexpr CGEventType keyUp = 11;
constexpr CGEventType flagsChanged = 12;

bool isKey(CGEventType type) {
    return type == keyDown || type == keyUp || type == flagsChanged;
}

bool isNotice(CGEventType type) {
    return type >= 0xFFFFFFFE;
}

} // namespace

void Keyboard::post(Event& event) {
    deliver(event);
}

void Keyboard::press(CGKeyCode key, CGEventType type, CGEventFlags after) {
    auto& event = make<Event>();
    event.number = type;
    event.key = key;
    event.flags = after;
    deliver(event);
    event.release();
}

void Keyboard::release(CGKeyCode key, CGEventType type, CGEventFlags after) {
    auto& event = make<Event>();
    event.number = type;
    event.key = key;
    event.flags = after;
    deliver(event);
    event.release();
}

void Keyboard::send(CGEventType type) {
    auto& event = make<Event>();
    event.number = type;
    event.flags = flags;
    deliver(event);
    event.release();
}

void Keyboard::disableTaps(CGEventType notice) {
    for (const auto& tap : taps) {
        as<TapPort>(tap.get()).isEnabled = false;
    }
    passThroughTaps(notice, nullptr);
}

void Keyboard::sendNullEvent(CGEventType type) {
    passThroughTaps(type, nullptr);
}

/// Through the taps to the application, and into the state of the session.
void Keyboard::deliver(Event& event) {
    const bool isHidden = secureInput && isKey(event.number);
    if ((!isHidden && !passThroughTaps(event.number, reference<CGEventRef>(event))) || !isKey(event.number)) {
        return;
    }
    if (event.number == keyDown) {
        typed += event.text.empty() ? layout[event.key] : event.text;
    }
    // A modifier that goes up leaves fewer flags behind.
    const bool goesDown = event.number == keyDown || (event.number == flagsChanged && (event.flags & ~flags) != 0);
    goesDown ? static_cast<void>(down.insert(event.key)) : static_cast<void>(down.erase(event.key));
    flags = event.flags;
}

bool Keyboard::passThroughTaps(CGEventType type, CGEventRef event) {
    for (const auto& reference : std::vector<CFRef<CFMachPortRef>>(taps)) {
        auto& tap = as<TapPort>(reference.get());
        const bool isWanted = isNotice(type) || (tap.isEnabled && (tap.mask >> type & 1U) != 0);
        if (!tap.isValid || !isWanted || tap.source == nullptr ||
            !Mac::current().runLoops.servesAlways(as<RunLoopSource>(tap.source))) {
            continue;
        }
        const auto passedOn = tap.callback(nullptr, type, event, tap.context);
        if (event != nullptr && passedOn == nullptr) {
            EXPECT_TRUE(type == keyDown || type == keyUp) << "the tap has swallowed something else than a key";
            return false;
        }
        EXPECT_TRUE(isNotice(type) || passedOn == event) << "the tap has exchanged an event";
    }
    return true;
}

void Keyboard::settle() {
    EXPECT_TRUE(taps.empty()) << "an event tap is left";
    taps.clear();
}

} // namespace quillane::standin

using namespace quillane;
using standin::Event;
using standin::Mac;
using standin::TapPort;

extern "C" {

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement, CGEventTapOptions options,
                               CGEventMask mask, CGEventTapCallBack callback, void* context) {
    if (location != kCGSessionEventTap || placement != kCGHeadInsertEventTap || options != kCGEventTapOptionDefault) {
        standin::refuse("another tap than an active one in front of the session's");
    }
    auto& keyboard = Mac::current().keyboard;
    if (!keyboard.permits) {
        return nullptr;
    }
    auto& port = standin::make<TapPort>();
    port.mask = mask;
    port.callback = callback;
    port.context = context;
    const auto made = standin::reference<CFMachPortRef>(port);
    keyboard.taps.push_back(CFRef<CFMachPortRef>::retain(made)); // the system holds it until it is invalid
    return made;
}

void CGEventTapEnable(CFMachPortRef tap, bool enable) {
    standin::as<TapPort>(tap).isEnabled = enable && Mac::current().keyboard.enablesTaps;
}

bool CGEventTapIsEnabled(CFMachPortRef tap) {
    return standin::as<TapPort>(tap).isEnabled;
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef /*allocator*/, CFMachPortRef port, CFIndex /*order*/) {
    if (!Mac::current().keyboard.givesSources) {
        return nullptr;
    }
    auto& source = standin::make<standin::RunLoopSource>("an event tap");
    return standin::as<TapPort>(port).source = standin::reference<CFRunLoopSourceRef>(source);
}

void CFMachPortInvalidate(CFMachPortRef port) {
    auto& exact = standin::as<TapPort>(port);
    exact.isValid = false;
    exact.source = nullptr;
    std::erase_if(Mac::current().keyboard.taps, [port](const auto& tap) { return tap.get() == port; });
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef /*source*/, CGKeyCode key, bool isDown) {
    auto& keyboard = Mac::current().keyboard;
    if (keyboard.eventsLeft == 0) {
        return nullptr;
    }
    keyboard.eventsLeft -= keyboard.eventsLeft > 0 ? 1 : 0;
    auto& event = standin::make<Event>();
    event.number = isDown ? standin::keyDown : standin::keyUp;
    event.key = key;
    event.flags = keyboard.flags;
    return standin::reference<CGEventRef>(event);
}

CGEventFlags CGEventGetFlags(CGEventRef event) {
    return standin::as<Event>(event).flags;
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
    standin::as<Event>(event).flags = flags;
}

CGEventType CGEventGetType(CGEventRef event) {
    return standin::as<Event>(event).number;
}

std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
    const auto& exact = standin::as<Event>(event);
    return field == kCGKeyboardEventKeycode ? exact.key : field == kCGEventSourceUserData ? exact.userData : 0;
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value) {
    if (field != kCGEventSourceUserData) {
        standin::refuse("setting another field than the source's own data");
    }
    standin::as<Event>(event).userData = value;
}

void CGEventKeyboardSetUnicodeString(CGEventRef event, UniCharCount length, const UniChar* text) {
    standin::as<Event>(event).text.assign(text, text + length);
}

void CGEventPost(CGEventTapLocation location, CGEventRef event) {
    if (location != kCGSessionEventTap) {
        standin::refuse("posting anywhere else than to the session");
    }
    Mac::current().keyboard.post(standin::as<Event>(event));
}

void CGEventPostToPid(pid_t pid, CGEventRef event) {
    const auto& exact = standin::as<Event>(event);
    Mac::current().keyboard.posted.push_back({pid, exact.key, exact.flags, exact.number == standin::keyDown});
}

CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID state) {
    return state == kCGEventSourceStateCombinedSessionState ? Mac::current().keyboard.flags : ~CGEventFlags{0};
}

bool CGEventSourceKeyState(CGEventSourceStateID state, CGKeyCode key) {
    return state == kCGEventSourceStateCombinedSessionState && Mac::current().keyboard.down.contains(key);
}

Boolean IsSecureEventInputEnabled() {
    return Mac::current().keyboard.secureInput;
}
}

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Quartz Event Services (developer.apple.com/documentation/coregraphics/quartz_event_services).

#include "CoreFoundation/CoreFoundation.h"

#include <sys/types.h>

using CGEventRef = struct OpaqueCGEvent*;
using CGEventSourceRef = struct OpaqueCGEventSource*;
using CGEventTapProxy = struct OpaqueCGEventTapProxy*;
using CGEventType = std::uint32_t;
using CGEventFlags = std::uint64_t;
using CGEventMask = std::uint64_t;
using CGEventField = std::uint32_t;
using CGKeyCode = std::uint16_t;
using CGEventTapCallBack = CGEventRef (*)(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* context);

enum CGEventTapLocation : std::uint32_t { kCGHIDEventTap, kCGSessionEventTap, kCGAnnotatedSessionEventTap };

enum CGEventTapPlacement : std::uint32_t { kCGHeadInsertEventTap, kCGTailAppendEventTap };

enum CGEventTapOptions : std::uint32_t { kCGEventTapOptionDefault, kCGEventTapOptionListenOnly };

enum CGEventSourceStateID : std::int32_t {
    kCGEventSourceStatePrivate = -1,
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
};

constexpr CGEventField kCGKeyboardEventKeycode = 9;
constexpr CGEventField kCGEventSourceUserData = 42;

extern "C" {
/// Null without permission. The event of a tap's own notices may be null. A callback that returns null takes its event
/// out of the stream.
CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement, CGEventTapOptions options,
                               CGEventMask mask, CGEventTapCallBack callback, void* context);
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool isDown);
CGEventFlags CGEventGetFlags(CGEventRef event);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
CGEventType CGEventGetType(CGEventRef event);
std::int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value);
void CGEventKeyboardSetUnicodeString(CGEventRef event, UniCharCount length, const UniChar* text);
void CGEventPost(CGEventTapLocation location, CGEventRef event);
void CGEventPostToPid(pid_t pid, CGEventRef event);

CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID state);
bool CGEventSourceKeyState(CGEventSourceStateID state, CGKeyCode key);
}

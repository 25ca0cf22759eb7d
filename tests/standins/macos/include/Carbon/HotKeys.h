// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Hot keys and handlers of the Carbon Event Manager ("Carbon Event Manager Reference").

#include "CoreFoundation/CoreFoundation.h"

using EventRef = struct OpaqueEvent*;
using EventTargetRef = struct OpaqueEventTarget*;
using EventHandlerRef = struct OpaqueEventHandler*;
using EventHandlerCallRef = struct OpaqueEventHandlerCall*;
using EventHotKeyRef = struct OpaqueEventHotKey*;
using EventParamName = OSType;
using EventParamType = OSType;
using EventHandlerUPP = OSStatus (*)(EventHandlerCallRef call, EventRef event, void* context);

struct EventTypeSpec {
    OSType eventClass;
    UInt32 eventKind;
};

struct EventHotKeyID {
    OSType signature;
    UInt32 id;
};

// Modifiers of the Event Manager.
constexpr UInt32 cmdKey = 1U << 8U;
constexpr UInt32 shiftKey = 1U << 9U;
constexpr UInt32 alphaLock = 1U << 10U;
constexpr UInt32 optionKey = 1U << 11U;
constexpr UInt32 controlKey = 1U << 12U;

constexpr OSType kEventClassKeyboard = 0x6B657962; // "keyb"
constexpr UInt32 kEventHotKeyPressed = 5;
constexpr EventParamName kEventParamDirectObject = 0x2D2D2D2D; // "----"
constexpr EventParamType typeEventHotKeyID = 0x686B6964;       // "hkid"

constexpr OSStatus eventNotHandledErr = -9874;
constexpr OSStatus eventInternalErr = -9868;
constexpr OSStatus eventParameterNotFoundErr = -9870;
constexpr OSStatus eventHotKeyExistsErr = -9878;
constexpr OSStatus eventHotKeyInvalidErr = -9879;

extern "C" {
EventTargetRef GetApplicationEventTarget();
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* context, EventHandlerRef* installed);
OSStatus RemoveEventHandler(EventHandlerRef handler);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType type, EventParamType* actualType,
                           ByteCount size, ByteCount* actualSize, void* data);
/// eventHotKeyExistsErr when the program has registered the key already.
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier, EventTargetRef target,
                             UInt32 options, EventHotKeyRef* registered);
OSStatus UnregisterEventHotKey(EventHotKeyRef key);
}

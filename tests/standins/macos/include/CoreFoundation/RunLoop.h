// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CoreFoundation/Base.h"

using CFRunLoopMode = CFStringRef;

enum CFRunLoopRunResult : SInt32 {
    kCFRunLoopRunFinished = 1, ///< the mode has no source
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
};

extern "C" {
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFRunLoopRef CFRunLoopGetMain();
CFRunLoopRef CFRunLoopGetCurrent();
/// The loop retains the source.
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled);
void CFRunLoopStop(CFRunLoopRef loop);
/// Also takes the source out of every loop.
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef port);
}

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Power assertions (developer.apple.com/documentation/iokit: IOPMAssertionCreateWithName and IOPMAssertionRelease).

#include "CoreFoundation/CoreFoundation.h"

using IOReturn = int;
using IOPMAssertionID = std::uint32_t;
using IOPMAssertionLevel = std::uint32_t;

constexpr IOReturn kIOReturnSuccess = 0;
constexpr IOReturn kIOReturnNotPrivileged = static_cast<IOReturn>(0xE00002C1);
constexpr IOReturn kIOReturnNotFound = static_cast<IOReturn>(0xE00002F0);
constexpr IOPMAssertionID kIOPMNullAssertionID = 0;
constexpr IOPMAssertionLevel kIOPMAssertionLevelOn = 255;

#define kIOPMAssertionTypePreventUserIdleSystemSleep CFSTR("PreventUserIdleSystemSleep")
#define kIOPMAssertionTypePreventUserIdleDisplaySleep CFSTR("PreventUserIdleDisplaySleep")

extern "C" {
IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
                                     IOPMAssertionID* assertion);
IOReturn IOPMAssertionRelease(IOPMAssertionID assertion);
}

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CoreFoundation/Base.h"

enum CFNumberType : CFIndex {
    kCFNumberSInt64Type = 4,
    kCFNumberIntType = 9,
    kCFNumberDoubleType = 13,
};

extern "C" {
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

CFTypeID CFBooleanGetTypeID();
Boolean CFBooleanGetValue(CFBooleanRef flag);

CFTypeID CFNumberGetTypeID();
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
Boolean CFNumberIsFloatType(CFNumberRef number);
/// False when the value was changed by the conversion.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFTypeID CFDateGetTypeID();
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime time);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
}

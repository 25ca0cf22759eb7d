// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CoreFoundation/Base.h"

/// How a collection keeps what is in it. The backend uses only those that retain and release.
struct CFArrayCallBacks {
    CFIndex version;
};

struct CFDictionaryKeyCallBacks {
    CFIndex version;
};

struct CFDictionaryValueCallBacks {
    CFIndex version;
};

extern "C" {
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeID CFArrayGetTypeID();
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index); ///< belongs to the array

CFTypeID CFDictionaryGetTypeID();
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key); ///< belongs to the dictionary
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values);

CFTypeID CFDataGetTypeID();
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count);
/// Reads the caller's bytes for as long as it lives.
CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                      CFAllocatorRef deallocator);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);
}

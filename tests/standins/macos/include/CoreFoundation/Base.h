// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

using Boolean = unsigned char;
using UInt8 = std::uint8_t;
using UInt32 = std::uint32_t;
using SInt32 = std::int32_t;
using UniChar = std::uint16_t;
using UniCharCount = unsigned long;
using OSStatus = SInt32;
using OSType = UInt32;
using ByteCount = unsigned long;
using ItemCount = unsigned long;

using CFIndex = long;
using CFTypeID = unsigned long;
using CFOptionFlags = unsigned long;
using CFHashCode = unsigned long;
using CFTimeInterval = double;
using CFAbsoluteTime = double;

/// Any object: "Core Foundation Design Concepts", opaque types. Each type is a pointer to what nobody looks into.
using CFTypeRef = const void*;
using CFAllocatorRef = const struct OpaqueAllocator*;
using CFStringRef = const struct OpaqueString*;
using CFBooleanRef = const struct OpaqueBoolean*;
using CFNumberRef = const struct OpaqueNumber*;
using CFDataRef = const struct OpaqueData*;
using CFDateRef = const struct OpaqueDate*;
using CFArrayRef = const struct OpaqueArray*;
using CFDictionaryRef = const struct OpaqueDictionary*;
using CFURLRef = const struct OpaqueURL*;
using CFNullRef = const struct OpaqueNull*;
using CFErrorRef = struct OpaqueError*;
using CFRunLoopRef = struct OpaqueRunLoop*;
using CFRunLoopSourceRef = struct OpaqueRunLoopSource*;
using CFMachPortRef = struct OpaqueMachPort*;
using CFNotificationCenterRef = struct OpaqueNotificationCenter*;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

constexpr OSStatus noErr = 0;

extern "C" {
extern const CFAllocatorRef kCFAllocatorDefault; ///< null
extern const CFAllocatorRef kCFAllocatorNull;    ///< frees nothing
extern const CFNullRef kCFNull;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFNullGetTypeID();
}

inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    return {location, length};
}

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CoreFoundation/Base.h"

using CFStringEncoding = UInt32;
// CFStringBuiltInEncodings
constexpr CFStringEncoding kCFStringEncodingISOLatin1 = 0x0201;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

extern "C" {
CFTypeID CFStringGetTypeID();
/// Null when the bytes are not of the encoding.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFIndex CFStringGetLength(CFStringRef string); ///< in UTF-16 units
/// Without a buffer it only counts the bytes. Stops at what does not fit, and without a loss byte at what the encoding
/// cannot say. The number of UTF-16 units that it has converted.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex size, CFIndex* used);

CFTypeID CFURLGetTypeID();
/// Null when the text is no address (RFC 3986).
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFStringRef CFURLGetString(CFURLRef address); ///< belongs to the address

/// What CFSTR makes: a constant string, which nobody has to release.
CFStringRef constantStringOfStandIn(const char* text);
}

#define CFSTR(text) constantStringOfStandIn("" text)

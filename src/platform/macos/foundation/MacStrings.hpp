// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"

#include <string>
#include <string_view>

#ifdef __OBJC__
#import <Foundation/Foundation.h>
#endif

namespace quillane {

/// The text as UTF-8; a lone surrogate becomes a question mark, and null an empty text (CFStringGetBytes).
[[nodiscard]] std::string utf8(CFStringRef text);

/// The UTF-8 as a string object, never null. Bytes that are not UTF-8 are read as Latin-1, so that a damaged text still
/// shows (CFStringCreateWithBytes).
[[nodiscard]] CFRef<CFStringRef> cfString(std::string_view text);

#ifdef __OBJC__
[[nodiscard]] inline std::string utf8(NSString* text) {
    return utf8((__bridge CFStringRef)text);
}

[[nodiscard]] inline NSString* nsString(std::string_view text) {
    const auto string = cfString(text);
    return (__bridge NSString*)string.get();
}
#endif

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/CFRef.hpp"

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace quillane {

/// The text as UTF-8; a lone surrogate becomes a question mark, and null an empty text (CFStringGetBytes).
[[nodiscard]] std::string utf8(CFStringRef text);
[[nodiscard]] std::string utf8(NSString* text);

/// The UTF-8 as a string object, never null. Bytes that are not UTF-8 are read as Latin-1, so that a damaged text still
/// shows (CFStringCreateWithBytes).
[[nodiscard]] CFRef<CFStringRef> cfString(std::string_view text);
[[nodiscard]] NSString* nsString(std::string_view text);

} // namespace quillane

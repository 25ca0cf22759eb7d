// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// The window list (developer.apple.com/documentation/coregraphics/quartz_window_services).

#include "CoreFoundation/CoreFoundation.h"

using CGFloat = double;
using CGWindowID = std::uint32_t;
using CGWindowListOption = std::uint32_t;

struct CGPoint {
    CGFloat x;
    CGFloat y;
};

struct CGSize {
    CGFloat width;
    CGFloat height;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
};

constexpr CGRect CGRectZero{};
constexpr CGWindowID kCGNullWindowID = 0;
constexpr CGWindowListOption kCGWindowListOptionOnScreenOnly = 1U << 0U;
constexpr CGWindowListOption kCGWindowListExcludeDesktopElements = 1U << 4U;

extern "C" {
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowOwnerPID;

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeTo); ///< from front to back
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect);
}

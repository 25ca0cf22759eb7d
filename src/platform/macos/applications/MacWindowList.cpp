// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacWindowList.hpp"

#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"

#include <CoreGraphics/CoreGraphics.h>

namespace quillane {

namespace {

int number(CFDictionaryRef entry, CFStringRef key) {
    int result = 0;
    if (const auto value = cfCast<CFNumberRef>(CFDictionaryGetValue(entry, key), CFNumberGetTypeID())) {
        CFNumberGetValue(value, kCFNumberIntType, &result);
    }
    return result;
}

} // namespace

void MacWindowList::read(Handler handler) {
    const AutoreleasePool pool;
    std::vector<OnScreenWindow> windows;
    const auto list = CFRef<CFArrayRef>::adopt(CGWindowListCopyWindowInfo(
        kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements, kCGNullWindowID));
    const CFIndex count = list ? CFArrayGetCount(list.get()) : 0;
    for (CFIndex i = 0; i < count; ++i) {
        const auto entry = cfCast<CFDictionaryRef>(CFArrayGetValueAtIndex(list.get(), i), CFDictionaryGetTypeID());
        CGRect bounds = CGRectZero;
        const auto stored =
            entry ? cfCast<CFDictionaryRef>(CFDictionaryGetValue(entry, kCGWindowBounds), CFDictionaryGetTypeID())
                  : nullptr;
        if (stored && CGRectMakeWithDictionaryRepresentation(stored, &bounds)) {
            windows.push_back({.pid = number(entry, kCGWindowOwnerPID),
                               .layer = number(entry, kCGWindowLayer),
                               .bounds = {bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height}});
        }
    }
    handler(windows);
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Windows.hpp"

#include "standins/macos/Mac.hpp"

namespace quillane::standin {

Value WindowServer::entry(int pid, int layer, CGRect bounds) {
    const auto rect = dictionary({{value("X"), value(bounds.origin.x)},
                                  {value("Y"), value(bounds.origin.y)},
                                  {value("Width"), value(bounds.size.width)},
                                  {value("Height"), value(bounds.size.height)}});
    return dictionary({{borrowed(kCGWindowOwnerPID), value(pid)},
                       {borrowed(kCGWindowLayer), value(layer)},
                       {borrowed(kCGWindowBounds), rect}});
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

const CFStringRef kCGWindowBounds = CFSTR("kCGWindowBounds");
const CFStringRef kCGWindowLayer = CFSTR("kCGWindowLayer");
const CFStringRef kCGWindowOwnerPID = CFSTR("kCGWindowOwnerPID");

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeTo) {
    if (option != (kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements) ||
        relativeTo != kCGNullWindowID) {
        standin::refuse("a list of other windows");
    }
    const auto& server = standin::Mac::current().windows;
    if (!server.isAnswering) {
        return nullptr;
    }
    return static_cast<CFArrayRef>(CFRetain(standin::list(server.windows).get()));
}

bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect) {
    const auto read = [&](const char* key, CGFloat* number) {
        const auto found =
            cfCast<CFNumberRef>(standin::entry(dictionary, standin::string(key).get()), CFNumberGetTypeID());
        return found != nullptr && CFNumberGetValue(found, kCFNumberDoubleType, number) != 0;
    };
    return read("X", &rect->origin.x) && read("Y", &rect->origin.y) && read("Width", &rect->size.width) &&
           read("Height", &rect->size.height);
}
}

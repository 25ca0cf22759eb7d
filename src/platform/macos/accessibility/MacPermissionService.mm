// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/accessibility/MacPermissionService.hpp"

#include "core/permissions/ApplicationLocation.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#import <IOKit/hidsystem/IOHIDLib.h>

namespace quillane {

bool MacPermissionService::isGranted(core::MacPermission permission) const {
    switch (permission) {
    case core::MacPermission::inputMonitoring:
        return CGPreflightListenEventAccess();
    case core::MacPermission::accessibility:
        return AXIsProcessTrusted();
    }
    return false;
}

void MacPermissionService::request(core::MacPermission permission) {
    @autoreleasepool {
        // Both calls return whether the permission is granted already, which `isGranted` reports when it matters.
        switch (permission) {
        case core::MacPermission::inputMonitoring:
            IOHIDRequestAccess(kIOHIDRequestTypeListenEvent);
            break;
        case core::MacPermission::accessibility:
            NSDictionary* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
            AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
            break;
        }
    }
}

bool MacPermissionService::openSettings(core::MacPermission permission) {
    @autoreleasepool {
        NSURL* address = [NSURL URLWithString:nsString(core::settingsAddress(permission))];
        return address && [NSWorkspace.sharedWorkspace openURL:address];
    }
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacLoginItemService.hpp"

#import <Foundation/Foundation.h>

/// The used part of SMAppService. The class is looked up at run time, so that its framework is loaded when the settings
/// need it and not at every launch.
@protocol QuillaneLoginItems <NSObject>
+ (id)mainAppService;
+ (void)openSystemSettingsLoginItems;
- (NSInteger)status;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end

namespace quillane {

namespace {

/// The values of SMAppServiceStatus.
enum ServiceStatus : NSInteger { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

Class<QuillaneLoginItems> loginItems() {
    static const BOOL loaded =
        [[NSBundle bundleWithPath:@"/System/Library/Frameworks/ServiceManagement.framework"] load];
    return loaded ? (Class<QuillaneLoginItems>)NSClassFromString(@"SMAppService") : Nil;
}

id<QuillaneLoginItems> mainApplication() {
    return [loginItems() mainAppService];
}

} // namespace

LoginItemStatus MacLoginItemService::status() const {
    @autoreleasepool {
        const id<QuillaneLoginItems> service = mainApplication();
        if (!service) {
            return LoginItemStatus::notFound;
        }
        switch (service.status) {
        case notRegistered:
            return LoginItemStatus::notRegistered;
        case enabled:
            return LoginItemStatus::enabled;
        case requiresApproval:
            return LoginItemStatus::requiresApproval;
        case notFound:
            return LoginItemStatus::notFound;
        default:
            return LoginItemStatus::unknown;
        }
    }
}

bool MacLoginItemService::enable() {
    @autoreleasepool {
        return [mainApplication() registerAndReturnError:nil];
    }
}

bool MacLoginItemService::disable() {
    @autoreleasepool {
        return [mainApplication() unregisterAndReturnError:nil];
    }
}

void MacLoginItemService::openSettings() {
    @autoreleasepool {
        [loginItems() openSystemSettingsLoginItems];
    }
}

} // namespace quillane

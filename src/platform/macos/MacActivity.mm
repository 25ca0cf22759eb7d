// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacActivity.hpp"

#import <Foundation/Foundation.h>

namespace quillane {

MacActivity::MacActivity(const char* reason) {
    @autoreleasepool {
        const id<NSObject> token =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:@(reason)];
        token_ = CFBridgingRetain(token);
    }
}

MacActivity::~MacActivity() {
    @autoreleasepool {
        [NSProcessInfo.processInfo endActivity:CFBridgingRelease(token_)];
    }
}

} // namespace quillane

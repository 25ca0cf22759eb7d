// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/foundation/MacActivity.hpp"

#import <Foundation/Foundation.h>

namespace quillane {

namespace {

int held = 0; // of the process, like the activities themselves

} // namespace

bool MacActivity::isHeld() {
    return held > 0;
}

MacActivity::MacActivity(const char* reason) {
    ++held;
    @autoreleasepool {
        const id<NSObject> token =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:@(reason)];
        token_ = CFBridgingRetain(token);
    }
}

MacActivity::~MacActivity() {
    --held;
    @autoreleasepool {
        [NSProcessInfo.processInfo endActivity:CFBridgingRelease(token_)];
    }
}

} // namespace quillane

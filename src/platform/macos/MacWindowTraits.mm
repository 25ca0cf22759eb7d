// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacWindowTraits.hpp"

#import <AppKit/AppKit.h>

namespace quillane {

void MacWindowTraits::setActivationPolicy(ActivationPolicy policy) {
    @autoreleasepool {
        NSApplication.sharedApplication.activationPolicy = policy == ActivationPolicy::accessory
                                                               ? NSApplicationActivationPolicyAccessory
                                                               : NSApplicationActivationPolicyRegular;
    }
}

void MacWindowTraits::activateApplication() {
    @autoreleasepool {
        [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
    }
}

} // namespace quillane

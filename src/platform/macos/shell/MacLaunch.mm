// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacLaunch.hpp"

#import <AppKit/AppKit.h>

namespace quillane {

namespace {

/// Ends [NSApplication run], which checks whether it has been stopped only after an event.
void stopEventLoop() {
    [NSApplication.sharedApplication stop:nil];
    NSEvent* event = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApplication.sharedApplication postEvent:event atStart:YES];
}

} // namespace

void finishLaunching() {
    if (NSRunningApplication.currentApplication.finishedLaunching) {
        return;
    }
    @autoreleasepool {
        NSNotificationCenter* center = NSNotificationCenter.defaultCenter;
        const id token = [center addObserverForName:NSApplicationDidFinishLaunchingNotification
                                             object:nil
                                              queue:nil
                                         usingBlock:^(NSNotification*) {
                                           stopEventLoop();
                                         }];
        [NSApplication.sharedApplication run];
        [center removeObserver:token];
    }
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#import <AppKit/AppKit.h>

namespace quillane::testing {

/// A press as AppKit hands it to the window that has the keys.
inline NSEvent* keyPress(NSString* characters, NSEventModifierFlags modifiers, unsigned short keyCode) {
    return [NSEvent keyEventWithType:NSEventTypeKeyDown
                            location:NSZeroPoint
                       modifierFlags:modifiers
                           timestamp:NSProcessInfo.processInfo.systemUptime
                        windowNumber:NSApp.keyWindow.windowNumber
                             context:nil
                          characters:characters
         charactersIgnoringModifiers:characters
                           isARepeat:NO
                             keyCode:keyCode];
}

} // namespace quillane::testing

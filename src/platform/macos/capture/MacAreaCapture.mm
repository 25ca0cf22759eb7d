// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/capture/MacAreaCapture.hpp"

#include "core/clipboard/AreaCaptureShortcut.hpp"
#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

namespace quillane {

namespace shortcut = core::areaCaptureShortcut;

bool MacAreaCapture::start(core::AppLanguage, std::function<void()>) {
    const auto source = CFRef<CGEventSourceRef>::adopt(CGEventSourceCreate(kCGEventSourceStatePrivate));
    if (!source) {
        return false;
    }
    const auto down = CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(source.get(), shortcut::keyCode, true));
    const auto up = CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(source.get(), shortcut::keyCode, false));
    if (!down || !up) {
        return false;
    }
    for (const auto& event : {down, up}) {
        CGEventSetFlags(event.get(), shortcut::eventFlags);
        CGEventPost(kCGHIDEventTap, event.get());
    }
    return true;
}

bool MacAreaCapture::openShortcutSettings() {
    @autoreleasepool {
        NSURL* address = [NSURL URLWithString:nsString(shortcut::settingsAddress)];
        return address && [NSWorkspace.sharedWorkspace openURL:address];
    }
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacWindowTraits.hpp"

#include "platform/macos/shell/MacPointerTracking.hpp"

#include <QWidget>

#import <AppKit/AppKit.h>

/// AppKit calls this while it makes a panel with NSWindowStyleMaskNonactivatingPanel, so that a click on the panel
/// activates no application. Setting the style mask of an existing panel does not call it (Feedback Assistant
/// FB16484811), and Qt makes its panels without that style. Not public: checked for before a call.
@protocol QuillanePreventsActivation
- (void)_setPreventsActivation:(BOOL)prevents;
@end

namespace quillane {

namespace {

constexpr NSWindowStyleMask cardStyle = NSWindowStyleMaskNonactivatingPanel;
constexpr NSWindowStyleMask searchStyle =
    NSWindowStyleMaskTitled | NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
static_assert(cardStyle == 128 && searchStyle == 32897);

constexpr NSWindowCollectionBehavior panelBehavior =
    NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(panelBehavior == 258);

void preventActivation(NSWindow* panel) {
    if ([panel respondsToSelector:@selector(_setPreventsActivation:)]) {
        [(id<QuillanePreventsActivation>)panel _setPreventsActivation:YES];
    }
}

void hideTitle(NSWindow* window) {
    window.titleVisibility = NSWindowTitleHidden;
    window.titlebarAppearsTransparent = YES;
    for (const NSWindowButton button : {NSWindowCloseButton, NSWindowMiniaturizeButton, NSWindowZoomButton}) {
        [window standardWindowButton:button].hidden = YES;
    }
}

} // namespace

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

void MacWindowTraits::makePanel(QWidget& window, PanelKind kind) {
    window.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint); // Qt makes tools NSPanels
    const bool isSearch = kind == PanelKind::search;
    window.setWindowFlag(Qt::WindowDoesNotAcceptFocus, !isSearch); // otherwise a click gives it the keyboard
    window.setWindowFlag(Qt::WindowTransparentForInput, kind == PanelKind::sign);
    window.setAttribute(Qt::WA_ShowWithoutActivating, !isSearch);
    @autoreleasepool {
        NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
        NSWindow* panel = view.window;
        panel.styleMask = isSearch ? searchStyle : cardStyle;
        preventActivation(panel);
        panel.level = NSFloatingWindowLevel;
        panel.collectionBehavior = panelBehavior;
        panel.hidesOnDeactivate = NO; // not by WA_MacAlwaysShowToolWindow, with which Qt changes the level at times
        panel.releasedWhenClosed = NO;
        panel.hasShadow = YES;
        panel.ignoresMouseEvents = kind == PanelKind::sign;
        if (isSearch) {
            hideTitle(panel);
            trackPointerAlways(window);
        } else {
            panel.opaque = NO;
            panel.backgroundColor = NSColor.clearColor;
        }
    }
}

} // namespace quillane

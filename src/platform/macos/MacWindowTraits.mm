// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacWindowTraits.hpp"

#include <QWidget>

#import <AppKit/AppKit.h>

namespace quillane {

namespace {

constexpr NSWindowStyleMask cardStyle = NSWindowStyleMaskNonactivatingPanel;
constexpr NSWindowStyleMask searchStyle =
    NSWindowStyleMaskTitled | NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
static_assert(cardStyle == 128 && searchStyle == 32897);

constexpr NSWindowCollectionBehavior panelBehavior =
    NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;
static_assert(panelBehavior == 258);

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
    window.setWindowFlag(Qt::WindowDoesNotAcceptFocus, kind == PanelKind::card); // else a click gives it the keys
    window.setAttribute(Qt::WA_MacAlwaysShowToolWindow);
    window.setAttribute(Qt::WA_ShowWithoutActivating, kind == PanelKind::card);
    @autoreleasepool {
        NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
        NSWindow* panel = view.window;
        panel.styleMask = kind == PanelKind::card ? cardStyle : searchStyle;
        panel.level = NSFloatingWindowLevel;
        panel.collectionBehavior = panelBehavior;
        panel.hidesOnDeactivate = NO;
        panel.releasedWhenClosed = NO;
        panel.hasShadow = YES;
        if (kind == PanelKind::card) {
            panel.opaque = NO;
            panel.backgroundColor = NSColor.clearColor;
        } else {
            hideTitle(panel);
        }
    }
}

} // namespace quillane

// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacPointerTracking.hpp"

#include "platform/macos/foundation/MacCallback.hpp"

#include <QCoreApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

/// Receives the events of the tracking area and hands them to the widget's window as Qt would.
@interface QuillanePointerTracker : NSObject
@property(nonatomic) QPointer<QWidget> widget;
@end

@implementation QuillanePointerTracker

/// The window, unless Qt tracks the pointer itself.
- (QWindow*)window {
    return NSApplication.sharedApplication.active || !_widget ? nullptr : _widget->windowHandle();
}

- (void)mouseMoved:(NSEvent*)event {
    quillane::guarded([&] {
        if (QWindow* window = [self window]) {
            const QPointF place = QCursor::pos();
            QMouseEvent moved(QEvent::MouseMove, window->mapFromGlobal(place), place, Qt::NoButton, Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(window, &moved);
        }
    });
}

- (void)mouseEntered:(NSEvent*)event {
    quillane::guarded([&] {
        if (QWindow* window = [self window]) {
            const QPointF place = QCursor::pos();
            const QPointF local = window->mapFromGlobal(place);
            QEnterEvent entered(local, local, place);
            QCoreApplication::sendEvent(window, &entered);
        }
    });
}

- (void)mouseExited:(NSEvent*)event {
    quillane::guarded([&] {
        if (QWindow* window = [self window]) {
            QEvent left(QEvent::Leave);
            QCoreApplication::sendEvent(window, &left);
        }
    });
}

@end

namespace quillane {

void trackPointerAlways(QWidget& window) {
    @autoreleasepool {
        NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
        QuillanePointerTracker* tracker = [[QuillanePointerTracker alloc] init];
        tracker.widget = &window;
        const NSTrackingAreaOptions options =
            NSTrackingMouseMoved | NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways | NSTrackingInVisibleRect;
        [view addTrackingArea:[[NSTrackingArea alloc] initWithRect:NSZeroRect
                                                           options:options
                                                             owner:tracker
                                                          userInfo:nil]];
        static const char key = 0; // the tracking area does not own its owner, so the view does
        objc_setAssociatedObject(view, &key, tracker, OBJC_ASSOCIATION_RETAIN_NONATOMIC);
    }
}

} // namespace quillane

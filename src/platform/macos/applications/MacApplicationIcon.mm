// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacApplicationIcon.hpp"

#include <QImage>
#include <QPixmap>

#include <array>

#import <AppKit/AppKit.h>

namespace quillane {

namespace {

constexpr std::array sides{32, 64, 128, 256, 512}; // pixels

} // namespace

QIcon applicationIcon() {
    QIcon icon;
    @autoreleasepool {
        NSImage* image = NSApplication.sharedApplication.applicationIconImage;
        for (const int side : sides) {
            QImage canvas(side, side, QImage::Format_RGBA8888_Premultiplied);
            canvas.fill(0);
            unsigned char* plane = canvas.bits();
            NSBitmapImageRep* bitmap =
                [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:&plane
                                                        pixelsWide:side
                                                        pixelsHigh:side
                                                     bitsPerSample:8
                                                   samplesPerPixel:4
                                                          hasAlpha:YES
                                                          isPlanar:NO
                                                    colorSpaceName:NSDeviceRGBColorSpace
                                                       bytesPerRow:static_cast<NSInteger>(canvas.bytesPerLine())
                                                      bitsPerPixel:32];
            NSGraphicsContext* context = [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap];
            if (!image || !context) {
                return icon;
            }
            [NSGraphicsContext saveGraphicsState];
            NSGraphicsContext.currentContext = context;
            [image drawInRect:NSMakeRect(0, 0, side, side)];
            [context flushGraphics];
            [NSGraphicsContext restoreGraphicsState];
            icon.addPixmap(QPixmap::fromImage(canvas.copy())); // the bitmap's memory is the canvas's
        }
    }
    return icon;
}

void leaveDockIconToSystem() {
    @autoreleasepool {
        NSApplication.sharedApplication.applicationIconImage = nil;
    }
}

} // namespace quillane

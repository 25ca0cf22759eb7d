// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacSystemSymbols.hpp"

#include "platform/macos/foundation/MacStrings.hpp"

#include <algorithm>
#include <cstring>

namespace quillane {

namespace {

/// The largest rectangle of the image's proportions in the middle of a square.
NSRect fitted(NSSize size, CGFloat side) {
    const CGFloat scale = side / std::max({size.width, size.height, CGFloat(1)});
    const NSSize scaled = NSMakeSize(size.width * scale, size.height * scale);
    return NSMakeRect((side - scaled.width) / 2, (side - scaled.height) / 2, scaled.width, scaled.height);
}

} // namespace

NSImage* menuIcon(std::string_view name) {
    // No description: the row's title describes the row.
    NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name) accessibilityDescription:nil];
    NSImageSymbolConfiguration* size =
        [NSImageSymbolConfiguration configurationWithPointSize:[NSFont menuFontOfSize:0].pointSize
                                                        weight:NSFontWeightRegular
                                                         scale:NSImageSymbolScaleMedium];
    NSImage* image = [symbol imageWithSymbolConfiguration:size];
    [image setTemplate:YES]; // the property's name is a C++ keyword
    return image;
}

NSImage* menuApplicationIcon() {
    NSImage* icon = [NSApplication.sharedApplication.applicationIconImage copy];
    icon.size = NSMakeSize(16, 16);
    return icon;
}

std::optional<TemplateImage> MacSystemSymbols::image(std::string_view name, int pixels) const {
    if (name.empty() || pixels < 1) {
        return std::nullopt;
    }
    @autoreleasepool {
        NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name) accessibilityDescription:nil];
        NSImageSymbolConfiguration* size = [NSImageSymbolConfiguration configurationWithPointSize:pixels
                                                                                           weight:NSFontWeightRegular];
        symbol = [symbol imageWithSymbolConfiguration:size];
        NSBitmapImageRep* canvas = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                                           pixelsWide:pixels
                                                                           pixelsHigh:pixels
                                                                        bitsPerSample:8
                                                                      samplesPerPixel:4
                                                                             hasAlpha:YES
                                                                             isPlanar:NO
                                                                       colorSpaceName:NSDeviceRGBColorSpace
                                                                          bytesPerRow:0
                                                                         bitsPerPixel:0];
        NSGraphicsContext* context = [NSGraphicsContext graphicsContextWithBitmapImageRep:canvas];
        if (!symbol || !context) {
            return std::nullopt;
        }
        std::memset(canvas.bitmapData, 0, static_cast<std::size_t>(canvas.bytesPerPlane));
        [NSGraphicsContext saveGraphicsState];
        NSGraphicsContext.currentContext = context;
        [symbol drawInRect:fitted(symbol.size, pixels)];
        [context flushGraphics];
        [NSGraphicsContext restoreGraphicsState];
        TemplateImage result{pixels, pixels, 1, {}};
        for (int y = 0; y < pixels; ++y) {
            const auto* line = canvas.bitmapData + y * canvas.bytesPerRow;
            for (int x = 0; x < pixels; ++x) {
                result.coverage.push_back(std::byte(line[x * 4 + 3]));
            }
        }
        return result;
    }
}

} // namespace quillane

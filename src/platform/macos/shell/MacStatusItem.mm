// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacStatusItem.hpp"

#include "core/support/Lifetime.hpp"
#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/shell/MacMenuRows.hpp"

#import <AppKit/AppKit.h>
#import <UserNotifications/UserNotifications.h>

#include <utility>

namespace quillane {

namespace {

/// Black at the given coverage; nil when the value's sizes do not agree.
NSImage* templateImage(const TemplateImage& image) {
    if (image.width <= 0 || image.height <= 0 || image.scale <= 0 ||
        image.coverage.size() != static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height)) {
        return nil;
    }
    NSBitmapImageRep* pixels = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                                       pixelsWide:image.width
                                                                       pixelsHigh:image.height
                                                                    bitsPerSample:8
                                                                  samplesPerPixel:2
                                                                         hasAlpha:YES
                                                                         isPlanar:NO
                                                                   colorSpaceName:NSCalibratedWhiteColorSpace
                                                                      bytesPerRow:0
                                                                     bitsPerPixel:0];
    const auto width = static_cast<std::size_t>(image.width);
    for (std::size_t i = 0; i < image.coverage.size(); ++i) {
        auto* pixel = pixels.bitmapData + i / width * static_cast<std::size_t>(pixels.bytesPerRow) + i % width * 2;
        pixel[0] = 0; // white, multiplied by alpha
        pixel[1] = std::to_integer<unsigned char>(image.coverage[i]);
    }
    const NSSize size = NSMakeSize(image.width / image.scale, image.height / image.scale);
    pixels.size = size;
    NSImage* result = [[NSImage alloc] initWithSize:size];
    [result addRepresentation:pixels];
    [result setTemplate:YES]; // the property's name is a C++ keyword
    return result;
}

} // namespace

struct MacStatusItem::Item {
    NSStatusItem* item = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
    NSMenu* menu = [[NSMenu alloc] initWithTitle:@""];
    TemplateImage image;
    core::Lifetime lifetime;

    Item() {
        menu.autoenablesItems = NO; // the rows themselves decide which are enabled
        item.menu = menu;
    }

    ~Item() { [NSStatusBar.systemStatusBar removeStatusItem:item]; }

    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
};

MacStatusItem::MacStatusItem() : item_(std::make_unique<Item>()) {}

MacStatusItem::~MacStatusItem() = default;

void MacStatusItem::setImage(const TemplateImage& image, const std::string& accessibilityLabel) {
    @autoreleasepool {
        NSStatusBarButton* button = item_->item.button;
        button.accessibilityLabel = nsString(accessibilityLabel);
        if (image == item_->image) {
            return;
        }
        item_->image = image;
        button.image = templateImage(image);
    }
}

void MacStatusItem::setMenu(std::vector<MenuRow> rows, LayoutDirection direction) {
    @autoreleasepool {
        item_->menu.userInterfaceLayoutDirection = layoutDirection(direction);
        showRows(item_->menu, rows);
    }
}

bool MacStatusItem::isVisible() const {
    return item_->item.visible;
}

void MacStatusItem::popUpMenu() {
    // A click returns when the menu has closed. A timer, unlike the main dispatch queue, fires inside such a loop.
    [item_->item.button performSelector:@selector(performClick:) withObject:nil afterDelay:0];
}

void MacStatusItem::notify(const std::string& title, const std::string& text, std::function<void()> failed) {
    @autoreleasepool {
        const auto fail = [alive = item_->lifetime.watch(), failed = std::move(failed)] {
            dispatch_async(dispatch_get_main_queue(), ^{
              if (alive && failed) {
                  guarded(failed);
              }
            });
        };
        if (!NSBundle.mainBundle.bundleIdentifier) {
            fail();
            return; // outside a bundle there is no notification center, and requesting it ends the program
        }
        UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
        content.title = nsString(title);
        content.body = nsString(text);
        UNNotificationRequest* request = [UNNotificationRequest requestWithIdentifier:NSUUID.UUID.UUIDString
                                                                              content:content
                                                                              trigger:nil];
        UNUserNotificationCenter* center = UNUserNotificationCenter.currentNotificationCenter;
        // The user is asked the first time only; the answer comes on a queue of the center's own.
        [center requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                              completionHandler:^(BOOL granted, NSError*) {
                                if (!granted) {
                                    fail();
                                    return;
                                }
                                [center addNotificationRequest:request
                                         withCompletionHandler:^(NSError* error) {
                                           if (error) {
                                               fail();
                                           }
                                         }];
                              }];
    }
}

} // namespace quillane

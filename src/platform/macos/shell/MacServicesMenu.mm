// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacServicesMenu.hpp"

#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>

#include <utility>

/// Receives the messages of the Services menu.
@interface QuillaneServicesProvider : NSObject
@property(nonatomic) quillane::ServicesMenu::Share share;
- (void)share:(NSPasteboard*)pasteboard userData:(NSString*)userData error:(NSString* __autoreleasing _Nullable*)error;
@end

@implementation QuillaneServicesProvider

- (void)share:(NSPasteboard*)pasteboard userData:(NSString*)userData error:(NSString* __autoreleasing _Nullable*)error {
    std::vector<std::string> urls;
    NSArray* files = [pasteboard readObjectsForClasses:@[ [NSURL class] ]
                                               options:@{NSPasteboardURLReadingFileURLsOnlyKey : @YES}];
    for (NSURL* url in files) {
        urls.push_back(quillane::utf8(url.filePathURL.absoluteString));
    }
    std::optional<std::string> refusal;
    const auto share = _share; // the call may replace it
    quillane::guarded([&] {
        if (share) {
            refusal = share(urls);
        }
    });
    if (refusal && error) {
        *error = quillane::nsString(*refusal);
    }
}

@end

namespace quillane {

struct MacServicesMenu::Provider {
    QuillaneServicesProvider* object = [[QuillaneServicesProvider alloc] init];
};

MacServicesMenu::MacServicesMenu() : provider_(std::make_unique<Provider>()) {}

MacServicesMenu::~MacServicesMenu() {
    provider_->object.share = nullptr;
    if (NSApp.servicesProvider == provider_->object) {
        NSApp.servicesProvider = nil;
    }
}

void MacServicesMenu::provideShare(Share share) {
    const bool isProvided = static_cast<bool>(share);
    provider_->object.share = std::move(share);
    @autoreleasepool {
        NSApp.servicesProvider = isProvided ? provider_->object : nil;
        NSUpdateDynamicServices();
    }
}

} // namespace quillane

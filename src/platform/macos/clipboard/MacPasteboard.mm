// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/clipboard/MacPasteboard.hpp"

#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>

/// Additions of macOS 15.4 to NSPasteboard, for older SDKs; checked for at run time before a call.
@protocol QuillanePasteboardAccess
- (NSInteger)accessBehavior;
@end

namespace quillane {

namespace {

constexpr NSInteger asksForAccess = 1; // NSPasteboardAccessBehaviorAsk
constexpr NSInteger deniesAccess = 3;  // NSPasteboardAccessBehaviorAlwaysDeny

NSPasteboard* general() {
    return NSPasteboard.generalPasteboard;
}

NSData* nsData(const std::vector<std::byte>& bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

NSPasteboardItem* pasteboardItem(const core::PasteboardItem& item) {
    NSPasteboardItem* result = [[NSPasteboardItem alloc] init];
    for (const auto& representation : item.representations) {
        if (![result setData:nsData(*representation.data) forType:nsString(representation.type)]) {
            return nil;
        }
    }
    for (const auto& [type, text] : item.strings) {
        if (![result setString:nsString(text) forType:nsString(type)]) {
            return nil;
        }
    }
    return result;
}

std::vector<std::string> names(NSArray<NSPasteboardType>* types) {
    std::vector<std::string> result;
    for (NSPasteboardType type in types) {
        result.push_back(utf8(type));
    }
    return result;
}

std::optional<std::filesystem::path> findFile(std::string_view url) {
    if (!core::isFileReference(url)) {
        return core::referencedFile(url);
    }
    @autoreleasepool {
        NSURL* file = [NSURL URLWithString:nsString(url)].filePathURL; // none when there is no such file
        return file ? std::optional<std::filesystem::path>(file.fileSystemRepresentation) : std::nullopt;
    }
}

} // namespace

/// Each request for the items makes new ones, which fetch their types and data again.
struct MacPasteboard::Items {
    NSInteger changeCount = -1;
    NSArray<NSPasteboardItem*>* items = nil;

    NSArray<NSPasteboardItem*>* current() {
        NSPasteboard* pasteboard = general();
        if (pasteboard.changeCount != changeCount || items.count == 0) { // an empty one may be filled within its change
            changeCount = pasteboard.changeCount;
            items = pasteboard.pasteboardItems;
        }
        return items;
    }
};

MacPasteboard::MacPasteboard() : items_(std::make_unique<Items>()) {}

MacPasteboard::~MacPasteboard() = default;

std::int64_t MacPasteboard::changeCount() const {
    @autoreleasepool {
        return general().changeCount;
    }
}

std::vector<std::vector<std::string>> MacPasteboard::itemTypes() const {
    @autoreleasepool {
        std::vector<std::vector<std::string>> result;
        for (NSPasteboardItem* item in items_->current()) {
            result.push_back(names(item.types));
        }
        return result;
    }
}

std::vector<std::string> MacPasteboard::ownTypes() const {
    @autoreleasepool {
        return names(general().types);
    }
}

std::optional<core::SharedBytes> MacPasteboard::data(std::size_t item, std::string_view type) const {
    @autoreleasepool {
        NSArray<NSPasteboardItem*>* items = items_->current();
        NSData* found = item < items.count ? [items[item] dataForType:nsString(type)] : nil;
        if (!found) {
            return std::nullopt;
        }
        const auto* bytes = static_cast<const std::byte*>(found.bytes);
        return std::vector<std::byte>(bytes, bytes + found.length);
    }
}

std::optional<std::string> MacPasteboard::string(std::string_view type) const {
    @autoreleasepool {
        NSString* found = [general() stringForType:nsString(type)];
        return found ? std::optional(utf8(found)) : std::nullopt;
    }
}

core::FileFinder MacPasteboard::fileFinder() const {
    return findFile;
}

PasteboardAccess MacPasteboard::access() const {
    @autoreleasepool {
        id pasteboard = general();
        if (![pasteboard respondsToSelector:@selector(accessBehavior)]) {
            return PasteboardAccess::allowed;
        }
        switch ([(id<QuillanePasteboardAccess>)pasteboard accessBehavior]) {
        case asksForAccess:
            return PasteboardAccess::asked;
        case deniesAccess:
            return PasteboardAccess::denied;
        default:
            return PasteboardAccess::allowed;
        }
    }
}

void MacPasteboard::openAccessSettings() {
    @autoreleasepool {
        [NSWorkspace.sharedWorkspace
            openURL:[NSURL
                        URLWithString:@"x-apple.systempreferences:com.apple.preference.security?Privacy_Pasteboard"]];
    }
}

void MacPasteboard::setInterest(Interest interest) {
    if (!interest) {
        recording_.reset();
    } else if (!recording_) {
        recording_ = std::make_unique<MacActivity>("Records what is copied");
    }
}

void MacPasteboard::clear() {
    @autoreleasepool {
        [general() clearContents];
    }
}

bool MacPasteboard::setString(std::string_view type, std::string_view text) {
    @autoreleasepool {
        return [general() setString:nsString(text) forType:nsString(type)];
    }
}

bool MacPasteboard::write(std::vector<core::PasteboardItem> items) {
    @autoreleasepool {
        NSMutableArray<NSPasteboardItem*>* objects = [NSMutableArray array];
        for (const auto& item : items) {
            NSPasteboardItem* object = pasteboardItem(item);
            if (!object) {
                return false;
            }
            [objects addObject:object];
        }
        return objects.count > 0 && [general() writeObjects:objects];
    }
}

} // namespace quillane

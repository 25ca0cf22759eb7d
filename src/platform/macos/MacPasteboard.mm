// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/MacPasteboard.hpp"

#include "platform/macos/MacStrings.hpp"

#import <AppKit/AppKit.h>

namespace quillane {

namespace {

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

} // namespace

std::int64_t MacPasteboard::changeCount() const {
    @autoreleasepool {
        return general().changeCount;
    }
}

std::vector<std::vector<std::string>> MacPasteboard::itemTypes() const {
    @autoreleasepool {
        std::vector<std::vector<std::string>> result;
        for (NSPasteboardItem* item in general().pasteboardItems) {
            auto& types = result.emplace_back();
            for (NSPasteboardType type in item.types) {
                types.push_back(utf8(type));
            }
        }
        return result;
    }
}

std::optional<core::SharedBytes> MacPasteboard::data(std::size_t item, std::string_view type) const {
    @autoreleasepool {
        NSArray<NSPasteboardItem*>* items = general().pasteboardItems;
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

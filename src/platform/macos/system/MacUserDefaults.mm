// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/system/MacUserDefaults.hpp"

#include "platform/macos/foundation/MacPropertyList.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <Foundation/Foundation.h>

namespace quillane {

namespace {

NSUserDefaults* standardDefaults() {
    return NSUserDefaults.standardUserDefaults;
}

/// The application's own domain: `objectForKey:` would also find values of the global domain, as "AppleLanguages".
NSDictionary* ownDomain() {
    NSString* name = NSBundle.mainBundle.bundleIdentifier;
    return name == nil ? nil : [standardDefaults() persistentDomainForName:name];
}

void store(std::string_view key, const core::PropertyListValue& value) {
    const auto object = propertyListObject(value);
    [standardDefaults() setObject:(__bridge id)object.get() forKey:nsString(key)];
}

/// Waits until the preferences daemon has the changes, so that a kill right after the call does not lose them.
void handOver() {
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

} // namespace

std::optional<core::PropertyListValue> MacUserDefaults::object(std::string_view key) const {
    @autoreleasepool {
        return propertyListValue((__bridge CFTypeRef)ownDomain()[nsString(key)]);
    }
}

void MacUserDefaults::setObject(std::string_view key, core::PropertyListValue value) {
    @autoreleasepool {
        store(key, value);
        handOver();
    }
}

void MacUserDefaults::setObjects(const core::PropertyListValue::Dictionary& values) {
    @autoreleasepool {
        for (const auto& [key, value] : values) {
            store(key, value);
        }
        handOver();
    }
}

void MacUserDefaults::removeObject(std::string_view key) {
    @autoreleasepool {
        [standardDefaults() removeObjectForKey:nsString(key)];
        handOver();
    }
}

std::optional<core::PropertyListValue::Dictionary> preferencesDomain(std::string_view bundleID) {
    @autoreleasepool {
        NSDictionary* domain = [standardDefaults() persistentDomainForName:nsString(bundleID)];
        const auto value = propertyListValue((__bridge CFTypeRef)domain);
        const auto* dictionary = value ? value->as<core::PropertyListValue::Dictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    }
}

} // namespace quillane
